#include "orn/geometry/ArcFunctions.h"

#include "tests/support/Geometry.h"

#include <fstream>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double epsilon = std::numeric_limits<double>::epsilon();

struct Split {
    double first, height, along, tangentY, tangentX, second;

    Split(double t, double bulge) { ORNArcSplit(t, bulge, &first, &height, &along, &tangentY, &tangentX, &second); }
};

// The expected values were computed with 100 digits; the bulges lie on both sides of every threshold.
TEST(ArcFunctions, HaveFullPrecisionForEveryBulge) {
    std::ifstream file{ORN_ARC_VALUES};
    int rows = 0;
    auto const near = [](double value, double expected, double units, double beside, char const* what) {
        EXPECT_NEAR(value, expected, units * epsilon * std::fabs(expected) + beside) << what;
    };
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        ++rows;
        std::istringstream row{line};
        std::vector<double> const v{std::istream_iterator<double>{row}, {}};
        double const bulge = v.at(0);
        if (v.size() == 4) {
            near(ORNArcLength(bulge), v[1], 4, 0, "length");
            // Just above their thresholds the closed formulas have lost more than one digit.
            near(ORNArcSegmentArea(bulge), v[2], 32, 0, "area");
            near(ORNArcSegmentCoG(bulge), v[3], 128, 0, "centre of gravity");
            EXPECT_EQ(ORNArcLength(-bulge), ORNArcLength(bulge));
            EXPECT_EQ(ORNArcSegmentArea(-bulge), -ORNArcSegmentArea(bulge));
            EXPECT_EQ(ORNArcSegmentCoG(-bulge), -ORNArcSegmentCoG(bulge));
            continue;
        }
        Split const s{v.at(1), bulge}, mirrored{v.at(1), -bulge};
        bool const beyond = v.at(1) > 1;  // the end of the arc
        double const units = beyond ? 16 : 4;
        near(s.first, v.at(2), units, 0, "first");
        // At the threshold of the height the series ends, and the closed formula cancels, about 1e-15 chords too early.
        near(s.height, v.at(3), units, bulge < 0.07 ? 0 : beyond ? 3e-14 : 1e-15, "height");
        near(s.along, v.at(4), units, 0, "along");
        near(s.tangentY, v.at(5), units, 0, "tangent y");
        near(s.tangentX, v.at(6), units, 0, "tangent x");
        near(s.second, v.at(7), units, 0, "second");
        EXPECT_TRUE(mirrored.first == -s.first && mirrored.height == -s.height && mirrored.along == s.along);
        EXPECT_TRUE(mirrored.tangentY == -s.tangentY && mirrored.second == -s.second);
    }
    EXPECT_GT(rows, 300);
    EXPECT_DOUBLE_EQ(ORNArcLength(10), 101.0 / 40 * 6.283185307179586 - ORNArcLength(0.1));
}

TEST(ArcFunctions, OfAStraightSegmentAndOfNoNumber) {
    for (double const zero : {0.0, -0.0})
        EXPECT_TRUE(ORNArcLength(zero) == 1 && ORNArcSegmentArea(zero) == 0 && ORNArcSegmentCoG(zero) == 0);
    EXPECT_TRUE(std::isnan(ORNArcLength(nan)) && std::isnan(ORNArcSegmentArea(nan)) &&
                std::isnan(ORNArcSegmentCoG(nan)));
    EXPECT_TRUE(std::isnan(Split(0.5, nan).height));
    EXPECT_EQ(ORNArcSegmentArea(5e-324), 0) << "the series ends although its terms vanish";
}

TEST(ArcFunctions, SplitMeetsTheEndsAndTheMidpoint) {
    for (double b = -10; b < 10; b += 0.03) {
        Split const middle{0, b};
        EXPECT_TRUE(Split(-1, b).first == 0 && Split(1, b).second == 0 && middle.first == middle.second);
        EXPECT_TRUE(middle.along == 0 && middle.tangentX == 1 && middle.tangentY == 0);
        EXPECT_NEAR(middle.height, b / 2, 4 * epsilon * std::fabs(b) + 1e-15);
    }
}

}
