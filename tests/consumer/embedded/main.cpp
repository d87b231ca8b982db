/* tint: three threads mix paints, and a ledger listens. */
#include "orn/orn.h"

#include <cstdio>
#include <thread>
#include <vector>

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
  std::vector<std::jthread> mixers;
  while (mixers.size() < 3)
    mixers.emplace_back([&mixed] { for (int pot = 0; pot < 100; ++pot) mixed->notify(Quark::create(L"ochre")); });
  mixers.clear();
  try {
    mixed->notify(Quark::create(L"vermilion"));
  } catch (NotStocked const &refusal) {
    std::printf("mixed: %d\nrefused: %s\n", ledger.pots, utf8(refusal.wWhat()).c_str());
  }
}
