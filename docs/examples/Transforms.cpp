#include "orn/orn.h"

#include <iostream>
#include <memory>

int main() {
    // What stands on the left is done first: turn about the origin, then move.
    auto placing = UniformTransform<2>::rotation(Angle::cosSin(0, 1));
    placing *= UniformTransform<2>::translation({5, 0});
    std::wcout << placing << L" takes (1,0) to " << Point<2>{1, 0} * placing << L" and back to "
               << Point<2>{5, 1} / placing << L'\n';

    // A box becomes the box of its mapped corners; a vector is turned and not moved.
    std::wcout << Extent<2>{{0, 0}, {2, 1}} * placing << L' ' << Vector<2>{1, 0} * placing << L'\n';

    // Composition keeps the most specific kind: similarity with stretching is affine, with a perspective a perspective.
    std::unique_ptr<Transform<2>> const stretched{placing.composeWith(NonUniformTransform<2>::scale(2, 1))};
    std::unique_ptr<Transform<2>> const seen{stretched->composeWith(PerspectiveTransform<2>{})};
    std::wcout << *stretched << L' ' << (dynamic_cast<PerspectiveTransform<2>*>(seen.get()) != nullptr) << L'\n';

    // Many points at once, with the transform looked at once.
    Point<2> corners[] = {{0, 0}, {2, 0}, {2, 1}};
    mapPoints(*stretched, corners, corners);
    for (Point<2> const& corner : corners) std::wcout << corner;
    std::wcout << L'\n';

    // Nothing tests for a singular map: the way back is not finite.
    std::wcout << (Point<2>{1, 1} / NonUniformTransform<2>::scale(0, 1)).isFinite() << L'\n';
}
