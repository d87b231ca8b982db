// edging: how much edging the beds of a garden need, and how large a sheet covers each. A bed's sides are straight, or
// arcs of a circle by their bulge.
#include <orn/orn.h>
#include <ornmsg/ornmsg.h>

#include <iostream>
#include <map>
#include <vector>

int main()
{
    std::map<Quark, std::vector<ORN::Arc<2>>, QuarkCollatesLess> beds;
    const Point<2> a(0, 0), b(3, 0), c(3, 4), west(-2, 0), east(2, 0);
    beds[Quark::create(L"\u00D6stliches Beet")] = {{a, 0, b}, {b, 0, c}, {c, 0, a}};
    beds[Quark::create(L"Pond, round")] = {{west, 1, east}, {east, 1, west}};

    const auto turned = UniformTransform<2>::rotation(Angle::degrees(90));
    for (const auto &[name, sides] : beds) {
        double length = 0;
        Extent<2> box;
        for (const ORN::Arc<2> &side : sides) {
            length += side.length();
            box |= side.extent() * turned;
        }
        std::cout << utf8(stringPrintf(L"%ls: %.4f m of edging, turned sheet %.0f x %.0f\n", name.value(), length,
                                       box.hi().x() - box.lo().x(), box.hi().y() - box.lo().y()));
    }

    try {
        const ORN::UUID none(L"no identifier");
    } catch (const ORN::OrnError &error) {
        std::cout << "OrnError: " << error.what() << "\n";
    }
    std::cout << utf8(ornMsg(0)) << "\n";
    return ORN::version() == ORN_VERSION_MAJOR * 10000 + ORN_VERSION_MINOR * 100 + ORN_VERSION_PATCH ? 0 : 1;
}
