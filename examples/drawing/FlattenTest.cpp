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

ORN::Arc<2> const arcs[] = {
    {{0, 0}, 1, {2, 0}},        {{3, -1}, -1, {-2, 4}},   {{1, 2}, 3.5, {2, 2}},
    {{-7, 1}, -20, {-7, 1.25}}, {{0, 0}, 1e-4, {100, 3}}, {{0, 0}, -0.7, {0.001, 0}},
};

TEST(Flatten, PolylinesAndBoxesAreThoseOfTheMappedArc) {
    for (auto const& transform : {skew(40, 40, 0), skew(200, 3, 30), skew(-2, 90, 110), skew(0.01, 0.01, 5)}) {
        double const stretch = drawing::largestStretch(*transform);
        for (ORN::Arc<2> const& arc : arcs) {
            SCOPED_TRACE(testing::Message() << arc.bulge() << " stretched by " << stretch);
            double const slack = 2e-6 * std::max(1.0, arc.length() * stretch);
            std::vector<Point<2>> line;
            drawing::flatten(arc, *transform, stretch, 0.25, line);
            EXPECT_EQ(line.front(), arc.start() * *transform);
            EXPECT_EQ(line.back(), arc.end() * *transform);
            // The farthest point from a chord is the one halfway between its ends: so it is on the arc, before it is mapped.
            double const pieces = static_cast<double>(line.size() - 1);
            for (std::size_t i = 0; i + 1 < line.size(); ++i) {
                double const at = static_cast<double>(i);
                EXPECT_LT((line[i] - pointOf(arc, at / pieces) * *transform).length(), slack);
                Point<2> const middle = line[i] + (line[i + 1] - line[i]) * 0.5;
                ASSERT_LE((middle - pointOf(arc, (at + 0.5) / pieces) * *transform).length(), 0.2501);
            }
            // A circle needs pi sqrt(r / (2 tolerance)) parts.
            double const turn = 4 * std::atan(std::fabs(arc.bulge())) / (2 * Angle::pi);
            EXPECT_LE(pieces, 1 + Angle::pi * std::sqrt(arc.length() * stretch / Angle::pi * turn));

            Extent<2> const extent = drawing::mappedExtent(arc, *transform);
            Extent<2> sampled;
            drawing::Disc const disc = drawing::discAround(arc);
            for (int i = 0; i <= 4000; ++i) {
                Point<2> const p = pointOf(arc, i / 4000.0);
                sampled += p * *transform;
                EXPECT_LT((p - disc.centre).length(), disc.radius * (1 + 1e-9));
            }
            EXPECT_LT((extent.lo() - sampled.lo()).length() + (extent.hi() - sampled.hi()).length(), slack);
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
