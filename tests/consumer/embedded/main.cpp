/* tint: three threads mix paints, a ledger listens, and the pots are set out along a half circle. */
#include "ledger.h"

#include "orn/colour/Colour.h"
#include "orn/geometry/Arc.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/text/Strings.h"
#include "orn/transforms/PointMapping.h"
#include "orn/transforms/UniformTransform.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

struct Paint {
  wchar_t const *label;
  double hue;
};

std::array<Paint, 3> const shelf{{{L"  OCHRE", 30}, {L"Viridian \u2003", 160}, {L"\u3000Ultramarine", 240}}};

void print(std::wstring const &line) {
  std::puts(utf8(line).c_str());
}

}

int main() {
  auto const mixed = EVSubscriptionList<Quark>::create();
  Ledger const ledger{*mixed};

  std::vector<std::thread> mixers;
  for (Paint const &paint : shelf) {
    mixers.emplace_back([&paint, &mixed] {
      Quark const name = Quark::create(simpleLowercase(trimwhitespace(paint.label)).c_str());
      for (int pot = 0; pot < 100; ++pot) mixed->notify(name);
    });
  }
  for (std::thread &mixer : mixers) mixer.join();
  print(L"mixed: " + ledger.list());

  try {
    mixed->notify(Quark::create(L"vermilion"));
  } catch (NotStocked const &refusal) {
    print(std::wstring{L"refused: "} + refusal.paint().value() + L" (" + refusal.wWhat() + L")");
  }

  ORN::Arc<2> const tray{Point<2>{2, 0}, 1, Point<2>{-2, 0}};
  std::array<Point<2>, shelf.size()> pots;
  for (std::size_t i = 0; i < shelf.size(); ++i) {
    Vector<2> heading;
    tray.measureOff(tray.length() * static_cast<double>(i) / 2, pots[i], heading);
  }
  mapPoints(UniformTransform<2>::translation(Vector<2>{5, 5}), pots, pots);
  for (std::size_t i = 0; i < shelf.size(); ++i) {
    Colour paint = Colour::hls(Angle::degrees(shelf[i].hue), 0.5, 1);
    print(stringPrintf(L"pot %d at %.3f, %.3f: red %.3f", static_cast<int>(i + 1), pots[i].x(), pots[i].y(), paint.r()));
  }

  try {
    mapPoints(UniformTransform<2>{}, std::array<Point<2>, 1>{}, pots);
  } catch (std::logic_error const &) {
    print(L"one point does not fill three pots");
  }
}
