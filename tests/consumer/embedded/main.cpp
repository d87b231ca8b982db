/* tint: three threads mix paints, a ledger listens, and the pots stand along a half circle. */
#include "orn/orn.h"

#include <array>
#include <cstdio>
#include <thread>

namespace {

struct NotStocked : ORN::OrnError {
  explicit NotStocked(Quark paint) : OrnError{std::wstring{L"not stocked: "} + paint.value()} {}
};

/* Counts the pots that are announced as mixed. */
class Ledger final : public EVSubscription<Quark> {
  public:
    explicit Ledger(EVSubscriptionList<Quark> &mixed) : EVSubscription{mixed, EVSubscriptionDetached{}} { attach(); }
    ~Ledger() override { destroy(); }

    void notify(Quark paint) override {
      if (paint == Quark::create(L"vermilion")) throw NotStocked{paint};
      ExclusiveLock const guard{word_};
      ++pots;
    }

    int pots = 0;

  private:
    LONG word_ = 0;
};

}

int main() {
  auto const mixed = EVSubscriptionList<Quark>::create();
  Ledger const ledger{*mixed};
  std::array<std::thread, 3> mixers;
  for (std::thread &mixer : mixers)
    mixer = std::thread{[&mixed] { for (int pot = 0; pot < 100; ++pot) mixed->notify(Quark::create(L"ochre")); }};
  for (std::thread &mixer : mixers) mixer.join();
  std::printf("mixed: %d\n", ledger.pots);

  try {
    mixed->notify(Quark::create(L"vermilion"));
  } catch (NotStocked const &refusal) {
    std::printf("refused: %s\n", utf8(refusal.wWhat()).c_str());
  }

  ORN::Arc<2> const tray{Point<2>{2, 0}, 1, Point<2>{-2, 0}};
  std::printf("tray: %.4f\n", tray.length());
}
