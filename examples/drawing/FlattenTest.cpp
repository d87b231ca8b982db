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
Point<2> pointOf(ORN::Arc<2> const& arc, long double fraction) {
    long double const b = arc.bulge(), k = (b - 1 / b) / 2;
    long double const dx = arc.end().x() - arc.start().x(), dy = arc.end().y() - arc.start().y();
    long double const cx = (dx + dy * k) / 2, cy = (dy - dx * k) / 2;
    long double const angle = 4 * std::atan(b) * fraction;
    long double const u = -cx, w = -cy;
    return {static_cast<double>(arc.start().x() + cx + u * std::cos(angle) - w * std::sin(angle)),
            static_cast<double>(arc.start().y() + cy + u * std::sin(angle) + w * std::cos(angle))};
}

double distance(Point<2> const& p, Point<2> const& a, Point<2> const& b) {
    Vector<2> const ab = b - a, ap = p - a;
    double const squared = ab.x() * ab.x() + ab.y() * ab.y();
    double const t = squared > 0 ? std::clamp((ap.x() * ab.x() + ap.y() * ab.y()) / squared, 0.0, 1.0) : 0.0;
    Vector<2> const off = p - (a + ab * t);
    return std::hypot(off.x(), off.y());
}

double distance(Point<2> const& p, std::vector<Point<2>> const& line) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) least = std::min(least, distance(p, line[i - 1], line[i]));
    return least;
}

ORN::Arc<2> const arcs[] = {
    {{0, 0}, 1, {2, 0}},        {{3, -1}, -1, {-2, 4}},   {{0, 0}, 0.1, {5, 5}},  {{1, 2}, 3.5, {2, 2}},
    {{-7, 1}, -20, {-7, 1.25}}, {{0, 0}, 1e-7, {100, 3}}, {{4, 4}, 0.5, {4, -4}}, {{0, 0}, -0.7, {0.001, 0}},
};

TEST(Flatten, KeepsWithinTheToleranceOfTheMappedArc) {
    for (auto const& transform : {skew(40, 40, 0), skew(200, 3, 30), skew(-2, 90, 110), skew(0.01, 0.01, 5)}) {
        double const stretch = drawing::largestStretch(*transform);
        for (ORN::Arc<2> const& arc : arcs) {
            SCOPED_TRACE(testing::Message() << arc.bulge() << " stretched by " << stretch);
            std::vector<Point<2>> line;
            drawing::flatten(arc, *transform, stretch, 0.25, line);
            EXPECT_EQ(line.front(), arc.start() * *transform);
            EXPECT_EQ(line.back(), arc.end() * *transform);
            for (int i = 1; i < 1000; ++i) {
                ASSERT_LE(distance(pointOf(arc, i / 1000.0L) * *transform, line), 0.25);
            }
            // A circle needs pi sqrt(r / (2 tolerance)) parts.
            double const pixels = std::fabs(arc.length()) * stretch / (2 * Angle::pi);
            double const turn = 4 * std::atan(std::fabs(arc.bulge())) / (2 * Angle::pi);
            EXPECT_LE(static_cast<double>(line.size()), 2 + Angle::pi * std::sqrt(2 * pixels * turn));
        }
    }
}

TEST(Flatten, StraightLinesHaveTwoPoints) {
    auto const transform = skew(200, 3, 30);
    std::vector<Point<2>> line(7);
    drawing::flatten({{0, 0}, {3, 4}}, *transform, drawing::largestStretch(*transform), 0.25, line);
    EXPECT_EQ(line.size(), 2u);
}

TEST(Flatten, ExtentsAreTheSmallestBoxes) {
    for (auto const& transform : {skew(1, 1, 0), skew(1, 1, 33), skew(5, 0.5, -70), skew(-3, 1, 200)}) {
        for (ORN::Arc<2> const& arc : arcs) {
            SCOPED_TRACE(testing::Message() << arc.bulge());
            Extent<2> const extent = drawing::mappedExtent(arc, *transform);
            Extent<2> sampled{arc.start() * *transform, arc.end() * *transform};
            for (int i = 1; i < 20000; ++i) sampled += pointOf(arc, i / 20000.0L) * *transform;
            double const slack = 1e-6 * std::max(1.0, arc.length() * drawing::largestStretch(*transform));
            for (int axis : {0, 1}) {
                EXPECT_NEAR(extent.lo(axis), sampled.lo(axis), slack);
                EXPECT_NEAR(extent.hi(axis), sampled.hi(axis), slack);
            }
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
