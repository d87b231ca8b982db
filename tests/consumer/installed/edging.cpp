// edging: how much edging the beds of a garden need, and how large a sheet covers each. A bed's sides are straight, or
// arcs of a circle by their bulge.
#include <orn/orn.h>
#include <ornmsg/ornmsg.h>

#include <iostream>
#include <map>
#include <string>
#include <vector>

struct Bed
{
    double length = 0;
    Extent<2> box;
};

int main()
{
    const std::wstring sides =
        L"bed,x1,y1,x2,y2,bulge\n"
        L"\u00D6stliches Beet,0,0,3,0,\n"
        L"\u00D6stliches Beet,3,0,3,4,\n"
        L"\u00D6stliches Beet,3,4,0,0,\n"
        L"\"Pond, round\",-2,0,2,0,1\n"
        L"\"Pond, round\",2,0,-2,0,1\n";

    std::map<Quark, Bed, QuarkCollatesLess> beds;
    ORN::CSVReader rows(sides, L"bed,x1,y1,x2,y2,bulge");
    for (std::vector<std::wstring> row; rows.read(row);) {
        double numbers[5] = {};
        for (std::size_t i = 0; i < 5; ++i)
            if (!isDouble(&numbers[i], row[i + 1].data(), row[i + 1].size()))
                numbers[i] = 0;
        const ORN::Arc<2> side(Point<2>(numbers[0], numbers[1]), numbers[4], ORN::Point<2>(numbers[2], numbers[3]));
        Bed &bed = beds[Quark::create(row[0].c_str())];
        bed.length += side.length();
        bed.box |= side.extent();
    }

    const auto turned = UniformTransform<2>::rotation(Angle::degrees(90));
    for (const auto &[name, bed] : beds) {
        const Extent<2> box = bed.box * turned;
        std::cout << utf8(stringPrintf(L"%ls: %.4f m of edging, turned sheet %.0f x %.0f\n", name.value(), bed.length,
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
