/* tint: three threads mix paints, a ledger listens, and the pots are set out along a half circle. */
#include "orn/colour/Colour.h"
#include "orn/events/EventSubscription.h"
#include "orn/foundation/Error.h"
#include "orn/geometry/Arc.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/text/Quark.h"
#include "orn/threading/Lock.h"
#include "orn/transforms/PointMapping.h"
#include "orn/transforms/UniformTransform.h"

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

  std::array<Point<2>, 3> pots;
  ORN::Arc<2> const tray{Point<2>{2, 0}, 1, Point<2>{-2, 0}};
  for (std::size_t i = 0; i < pots.size(); ++i) {
    Vector<2> heading;
    tray.measureOff(tray.length() * static_cast<double>(i) / 2, pots[i], heading);
  }
  mapPoints(UniformTransform<2>::translation(Vector<2>{5, 5}), pots, pots);
  for (Point<2> const pot : pots) {
    Colour const paint = Colour::hls(Angle::degrees(pot.x() * 20), 0.5, 1);
    std::puts(utf8(stringPrintf(L"pot at %.3f, %.3f: red %.3f", pot.x(), pot.y(), paint.r())).c_str());
  }
}
