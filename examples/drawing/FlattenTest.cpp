#include "drawing/Flatten.h"

#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/UniformTransform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using Affine = AffineTransform<2>;

std::unique_ptr<Affine> skew(double sx, double sy, double degrees) {
    auto const scaled = NonUniformTransform<2>::scale(sx, sy);
    return std::unique_ptr<Affine>{
        scaled.composeWith(static_cast<Affine const&>(UniformTransform<2>::rotation(Angle::degrees(degrees))))};
}

/// The point of an arc at a fraction of its angle, about its centre; not the way that the library takes.
Point<2> pointOf(ORN::Arc<2> const& arc, double fraction) {
    double const b = arc.bulge(), k = (b - 1 / b) / 2, angle = 4 * std::atan(b) * fraction;
    Vector<2> const chord = arc.end() - arc.start();
    Vector<2> const toCentre{(chord.x() + chord.y() * k) / 2, (chord.y() - chord.x() * k) / 2};
    return arc.start() + toCentre - toCentre * std::cos(angle) - toCentre.perpendicular() * std::sin(angle);
}

double distance(Point<2> const& p, Point<2> const& a, Point<2> const& b) {
    Vector<2> const ab = b - a, ap = p - a;
    double const squared = ab.x() * ab.x() + ab.y() * ab.y();
    double const t = squared > 0 ? std::clamp((ap.x() * ab.x() + ap.y() * ab.y()) / squared, 0.0, 1.0) : 0.0;
    return (p - (a + ab * t)).length();
}

ORN::Arc<2> const arcs[] = {
    {{0, 0}, 1, {2, 0}},        {{3, -1}, -1, {-2, 4}},   {{1, 2}, 3.5, {2, 2}},
    {{-7, 1}, -20, {-7, 1.25}}, {{0, 0}, 1e-4, {100, 3}}, {{0, 0}, -0.7, {0.001, 0}},
};

TEST(Flatten, PolylinesAndBoxesAreThoseOfTheMappedArc) {
    for (auto const& transform : {skew(40, 40, 0), skew(200, 3, 30), skew(-2, 90, 110), skew(0.01, 0.01, 5)}) {
        double const stretch = drawing::largestStretch(*transform);
        for (ORN::Arc<2> const& arc : arcs) {
            SCOPED_TRACE(testing::Message() << arc.bulge() << " stretched by " << stretch);
            std::vector<Point<2>> line;
            drawing::flatten(arc, *transform, stretch, 0.25, line);
            EXPECT_EQ(line.front(), arc.start() * *transform);
            EXPECT_EQ(line.back(), arc.end() * *transform);
            Extent<2> const extent = drawing::mappedExtent(arc, *transform);
            Extent<2> sampled{line.front(), line.back()};
            for (int i = 1; i < 4000; ++i) {
                Point<2> const p = pointOf(arc, i / 4000.0) * *transform;
                double least = std::numeric_limits<double>::infinity();
                for (std::size_t j = 1; j < line.size(); ++j)
                    least = std::min(least, distance(p, line[j - 1], line[j]));
                ASSERT_LE(least, 0.2501);
                sampled += p;
            }
            double const slack = 2e-6 * std::max(1.0, arc.length() * stretch);
            EXPECT_LT((extent.lo() - sampled.lo()).length() + (extent.hi() - sampled.hi()).length(), slack);
            // A circle needs pi sqrt(r / (2 tolerance)) parts.
            double const pixels = arc.length() * stretch / (2 * Angle::pi);
            double const turn = 4 * std::atan(std::fabs(arc.bulge())) / (2 * Angle::pi);
            EXPECT_LE(static_cast<double>(line.size()), 2 + Angle::pi * std::sqrt(2 * pixels * turn));
        }
    }
}

TEST(Flatten, TheLargestStretchIsTheLargerSingularValue) {
    EXPECT_DOUBLE_EQ(drawing::largestStretch(*skew(3, 0.5, 77)), 3);
    EXPECT_DOUBLE_EQ(drawing::largestStretch(*skew(0.25, -7, 12)), 7);
    // [[1, 1], [0, 1]]: the golden ratio
    auto const shear = NonUniformTransform<2>::axes(Vector<2>{1, 1}, Vector<2>{0, 1});
    EXPECT_DOUBLE_EQ(drawing::largestStretch(shear), 1.6180339887498949);
}

}
