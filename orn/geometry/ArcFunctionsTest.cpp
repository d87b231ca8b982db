#include "orn/geometry/ArcFunctions.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double epsilon = std::numeric_limits<double>::epsilon();

struct Split {
    double first, height, along, tangentY, tangentX, second;

    Split(double t, double bulge) { ORNArcSplit(t, bulge, &first, &height, &along, &tangentY, &tangentX, &second); }
};

// The expected values were computed with 60 digits; the bulges lie on both sides of every threshold.
TEST(ArcFunctions, LengthHasFullPrecisionForEveryBulge) {
    struct {
        double bulge, length;
    } const cases[] = {
        // clang-format off
        {1e-09, 1.0000000000000000007}, {0.0009999999, 1.0000006666664000001}, {0.001, 1.0000006666665333334},
        {0.0010000001, 1.0000006666666666667}, {0.03, 1.0005998920416363262}, {0.2, 1.0264569112193799464},
        {0.4142135623730951, 1.1107207345395915831}, {1.0, 1.5707963267948966192}, {2.5, 3.4518408540793420255},
        {4.999999999, 7.1416839865956176146}, {5.0, 7.1416839881140824765}, {5.000000001, 7.1416839896325473384},
        {5.0348001218066321, 7.194538117890938779}, {5.0452776906649444, 7.2104557794597580477},
        {10.0, 14.858389510467719378}, {1000.0, 1569.7978969245568808}, {100000000.0, 157079631.67948967763},
    };  // clang-format on
    for (auto const& c : cases) {
        EXPECT_NEAR(ORNArcLength(c.bulge), c.length, 4 * epsilon * c.length) << c.bulge;
        EXPECT_EQ(ORNArcLength(-c.bulge), ORNArcLength(c.bulge)) << c.bulge;
    }
    EXPECT_EQ(ORNArcLength(0), 1);
    EXPECT_EQ(ORNArcLength(-0.0), 1);
    EXPECT_TRUE(std::isnan(ORNArcLength(nan)));
    EXPECT_DOUBLE_EQ(ORNArcLength(10), 101.0 / 40 * 6.283185307179586 - ORNArcLength(0.1));
}

TEST(ArcFunctions, SegmentHasItsAreaAndCentreOfGravity) {
    struct {
        double bulge, area, centre;
    } const cases[] = {
        {1e-12, 3.3333333333333332663e-13, 2.0000000000000083352e-13},
        {0.01, 0.0033333999990476508616, 0.0020000171421333683317},
        {0.199999, 0.067196651034103541740, 0.040134668477878842492},
        {0.2, 0.067196992292596967079, 0.040134870478631488609},
        {0.200001, 0.067197333551168909989, 0.040135072479403593381},
        {0.20192617579328087, 0.067854462323908630783, 0.040523995657700052815},
        {0.3535, 0.12072777788434767226, 0.071419577440531849242},
        {0.3536, 0.12076354081478989362, 0.071440168141908777714},
        {0.353675275335879, 0.12079046236273328675, 0.071455668064040616436},
        {1.0, 0.39269908169872415481, 0.21220659078919378103},
        {3.0, 2.0681191283309089248, 0.70696092834229273463},
        {40.0, 314.54375278423406543, 9.9940149339959725637},
        {10000.0, 19634954.477601958069, 2499.9999750042441317},
    };
    for (auto const& c : cases) {
        // Just above their thresholds the closed formulas have lost more than one digit.
        EXPECT_NEAR(ORNArcSegmentArea(c.bulge), c.area, 32 * epsilon * c.area) << c.bulge;
        EXPECT_NEAR(ORNArcSegmentCoG(c.bulge), c.centre, 128 * epsilon * c.centre) << c.bulge;
        EXPECT_EQ(ORNArcSegmentArea(-c.bulge), -ORNArcSegmentArea(c.bulge));
        EXPECT_EQ(ORNArcSegmentCoG(-c.bulge), -ORNArcSegmentCoG(c.bulge));
    }
    EXPECT_EQ(ORNArcSegmentArea(0), 0);
    EXPECT_EQ(ORNArcSegmentCoG(0), 0);
    EXPECT_TRUE(std::isnan(ORNArcSegmentArea(nan)) && std::isnan(ORNArcSegmentCoG(nan)));
    EXPECT_EQ(ORNArcSegmentArea(5e-324), 0) << "the series ends although its terms vanish";
}

TEST(ArcFunctions, SplitHasFullPrecisionForEveryBulge) {
    struct {
        double t, bulge, first, height, along, tangentY, tangentX, second;
    } const cases[] = {
        {0.3, 1e-09, 6.5000000000000003481e-10, 4.5500000000000003166e-10, 0.14999999999999999454,
         -6.0000000000000001493e-10, 0.99999999999999999982, 3.5000000000000002725e-10},
        {-0.7, 1.4e-08, 2.1000000000000001214e-9, 3.5700000000000002269e-9, -0.35000000000000000112,
         1.9599999999999995705e-8, 0.99999999999999980792, 1.1899999999999999160e-8},
        {0.3, 1.5e-08, 9.7499999999999986231e-9, 6.8249999999999993940e-9, 0.15000000000000001492,
         -8.9999999999999980661e-9, 0.99999999999999995950, 5.2499999999999992686e-9},
        {-0.7, 0.0999999, 0.014951396972496856986, 0.025458544760915001407, -0.35118647093296304591,
         0.13908361453491856309, 0.99028064111538714347, 0.084921533598438353589},
        {0.9, 0.0999999, 0.094969103561450757675, 0.0094744869646535116808, 0.45056794801174571029,
         -0.17844257677858300524, 0.98395032740104289739, 0.0049834689282030241720},
        {-0.7, 0.1, 0.014951411827302120731, 0.025458570137062949122, -0.35118647329889381091, 0.13908375180154211090,
         0.99028062183646057228, 0.084921618363778101925},
        {0.9, 0.1000001, 0.094969293376934160850, 0.0094745058122133715264, 0.45056795027538867611,
         -0.17844292749353983829, 0.98395026379768570297, 0.0049834788294390139864},
        {0.25, 1.0, 0.53451113595079164109, 0.46193976625564337806, 0.19134171618254488586, -0.38268343236508977173,
         0.92387953251128675613, 0.30334668360734239168},
        {-0.5, 7.0, 0.37323778245253458936, 1.9668238504237669730, -1.7677669529663688110, 0.98994949366116653416,
         0.14142135623730950488, 1.8343143293347619744},
        {1.5, 0.05, 0.062529298712485819030, -0.031191518318695803536, 0.74844003394658485293, -0.14931471998934361980,
         0.98878972203118288119, -0.012490248388860805151},
        {-0.35, -0.4, -0.12429885057095177665, -0.17443423006443012413, -0.19083175263613192921,
         -0.26321621053259577501, 0.96473686905438636138, -0.26264267631815801368},
    };
    for (auto const& c : cases) {
        Split const s{c.t, c.bulge};
        auto const near = [&](double value, double expected, char const* what) {
            EXPECT_NEAR(value, expected, 4 * epsilon * std::fabs(expected)) << what << ' ' << c.t << ' ' << c.bulge;
        };
        near(s.first, c.first, "first");
        near(s.second, c.second, "second");
        near(s.along, c.along, "along");
        near(s.tangentX, c.tangentX, "tangent x");
        near(s.tangentY, c.tangentY, "tangent y");

        // At the threshold of the height the series ends and the closed formula cancels about 1e-15 chords too early.
        double const atThreshold = std::fabs(c.bulge) > 0.07 ? 1e-15 : 0;
        EXPECT_NEAR(s.height, c.height, 4 * epsilon * std::fabs(c.height) + atThreshold) << c.t << ' ' << c.bulge;
    }
}

TEST(ArcFunctions, SplitMeetsTheEndsAndTheMidpoint) {
    RandomGeometry random{8};
    for (int i = 0; i < 300; ++i) {
        double const b = random.magnitude(-10, 1), scale = 1 + std::fabs(b), slack = 8 * epsilon * scale * scale;
        Split const start{-1, b}, middle{0, b}, end{1, b};
        EXPECT_TRUE(start.first == 0 && end.second == 0);
        EXPECT_NEAR(start.second, b, slack);
        EXPECT_NEAR(start.along, -0.5, slack);
        EXPECT_NEAR(start.height, 0, slack);
        EXPECT_NEAR(end.along, 0.5, slack);
        EXPECT_NEAR(end.height, 0, slack);
        EXPECT_NEAR(middle.height, b / 2, slack);
        EXPECT_TRUE(middle.along == 0 && middle.first == middle.second);
        EXPECT_TRUE(middle.tangentX == 1 && middle.tangentY == 0);
    }
    EXPECT_TRUE(std::isnan(Split(0.5, nan).height));
}

}
