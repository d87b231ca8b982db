#include "orn/orn.h"

#include <iostream>
#include <vector>

int main() {
    // Points and vectors are different things: a difference of points is a vector, and only vectors scale.
    Point<2> const a{0, 0}, b{4, 0};
    Vector<2> const half = (b - a) * 0.5;
    std::wcout << a + half << L" is " << half.length() << L" from both\n";

    // A bulge of 1 is a semicircle. It runs anticlockwise, so from left to right it hangs below its chord.
    ORN::Arc<2> const arc{a, 1, b};
    std::wcout << arc << L" about " << arc.centre() << L", " << arc.length() << L" long, in " << arc.extent() << L'\n';

    Point<2> place;
    Vector<2> heading;
    bool const within = arc.measureOff(arc.length() / 4, place, heading);
    std::wcout << L"a quarter along: " << within << L", " << heading.theta() << L" degrees\n";

    // Arcs as drawings have them, and as a polyline that keeps within a tenth.
    ORN::Arc<2> const corner = ORN::arcAbout({10, 0}, 5, Angle::degrees(0), Angle::degrees(90));
    std::vector<Point<2>> points;
    ORN::flatten(corner, 0.1, points);
    std::wcout << corner << L" in " << points.size() - 1 << L" pieces, " << ORN::arcThrough(a, {2, 1}, b) << L'\n';

    // An empty box is one value, which any point or box replaces.
    Extent<2> box;
    std::wcout << box << L", then " << (box += a) << L", then " << (box | arc.extent()) << L'\n';

    // Angles are directions: there is no range to leave.
    Angle const turn = Angle::degrees(350) + Angle::degrees(20);
    std::wcout << turn << L" degrees, near 370: " << closerThanDegrees(turn, Angle::degrees(370), 1e-9) << L'\n';

    // Nothing throws on degenerate input; the result is not finite.
    auto const east = ORN::Line<2>::through(a, b);
    auto const rising = ORN::Line<2>::through({0, 1}, {2, 2});
    std::wcout << ORN::intersect(east, rising) << L", parallels: " << ORN::intersect(east, east).isFinite() << L'\n';
}
