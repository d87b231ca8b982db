#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/transforms/PointMapping.h"
#include "tests/support/Transforms.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfenv>
#include <tuple>

namespace {

/// Values of geometry are the doubles that they hold.
template <typename T>
using Numbers = std::array<double, sizeof(T) / sizeof(double)>;

template <typename T>
bool finite(T const& value) {
    return std::ranges::all_of(std::bit_cast<Numbers<T>>(value), [](double x) { return std::isfinite(x); });
}
template <typename... T>
bool finite(std::tuple<T...> const& all) {
    return std::apply([](auto const&... each) { return (finite(each) && ...); }, all);
}

/// On finite input, a finite result that does not overflow on its way comes without a floating-point exception that a
/// program may have switched on.
template <typename F>
void quietly(char const* what, F f) {
    std::feclearexcept(FE_ALL_EXCEPT);
    auto const result = f();
    int const raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
    if (finite(result)) {
        EXPECT_TRUE((raised & FE_OVERFLOW) != 0 || raised == 0) << what << " raises " << raised;
    }
}
#define QUIETLY(...) quietly(#__VA_ARGS__, [&] { return __VA_ARGS__; })

/// Numbers among which zeros, equal ones, tiny and large ones are frequent.
class Grid : public RandomGeometry {
public:
    using RandomGeometry::RandomGeometry;

    double any() {
        static constexpr double some[] = {0, 0, 0, -0.0, 1, 1, -1, 2, 0.5, -3, 1e-9, 1e-200, -5e-324, 1e90};
        int const i = whole(0, 19);
        return i < 14 ? some[i] : number(-5, 5);
    }
    template <typename T>
    T of() {
        Numbers<T> numbers;
        for (double& x : numbers) x = any();
        return std::bit_cast<T>(numbers);
    }
};

template <typename Body>
void often(Body body) {
    for (unsigned int seed = 0; seed < 4000 && !testing::Test::HasFailure(); ++seed) {
        Grid grid{seed};
        body(grid);
    }
}

TEST(FloatingPoint, AnglesVectorsAndPointsAreQuiet) {
    often([](Grid& grid) {
        double const x = grid.any(), y = grid.any();
        Angle const a = Angle::degrees(x), b = Angle::cosSin(x, y);
        QUIETLY(Angle::radians(x));
        QUIETLY(std::tuple(b, a * 3, a + b, a - b, a.degrees(), b.radians()));
        QUIETLY(a.tan());
        QUIETLY((Vector<2>{x, a}));
        auto const v = grid.of<Vector<2>>();
        auto const u = grid.of<Vector<3>>(), w = grid.of<Vector<3>>();
        QUIETLY(std::tuple(v.length(), v.lengthSquared(), cross(v, v), v.perpendicular(), v.quadrant() * 1.0));
        QUIETLY(v.theta());
        QUIETLY(v.unit());
        QUIETLY(u.unit());
        QUIETLY(u.altitude());
        QUIETLY(u.azimuth());
        QUIETLY(std::tuple(Vector<3>::altAz(x, a, b), cross(u, w), dot(u, w), u.length()));
        QUIETLY(grid.of<Vector<4>>().unit());
        QUIETLY(grid.of<Vector<1>>().unit());
        auto const p = grid.of<Point<3>>(), q = grid.of<Point<3>>();
        Extent<3> e{p, q}, other{q, q};
        QUIETLY(std::tuple(interp(p, q, x), midpoint(p, q), p - q, p + u, e, e.dilate(x), e.centre(), e & other));
        QUIETLY(e.update(Extent<3>{p, p}, Extent<3>{}) + e.contains(q) + (e < Extent<3>{}) + 0.0);
    });
}

TEST(FloatingPoint, MatricesLinesAndPlanesAreQuiet) {
    often([](Grid& grid) {
        auto const m2 = grid.of<Matrix<2>>();
        auto const m3 = grid.of<Matrix<3>>();
        auto const m4 = grid.of<Matrix<4>>();
        QUIETLY(std::tuple(m2.determinant(), m3.determinant(), m2 * m2, m4 * m4));
        QUIETLY(grid.of<Matrix<1>>().inverse());
        QUIETLY(m2.inverse());
        QUIETLY(m3.inverse());
        QUIETLY(m4.inverse());
        Matrix<3> all[3] = {m3, m3, m3};
        QUIETLY((invert(all, all), all[2]));
        auto const a = grid.of<Point<2>>(), b = grid.of<Point<2>>();
        auto const p = grid.of<Point<3>>(), q = grid.of<Point<3>>(), r = grid.of<Point<3>>(), s = grid.of<Point<3>>();
        auto const line = ORN::Line<3>::through(p, q), other = ORN::Line<3>::through(r, s);
        Plane const plane{p, q, r}, second{q - s, r};
        QUIETLY(ORN::Line<2>::through(a, b));
        if (!finite(std::tuple(line, other, plane, second))) return;
        QUIETLY(intersect(ORN::Line<2>::through(a, b), ORN::Line<2>{Vector<2>{1, 0}, a}));
        QUIETLY(intersect(line, plane));
        QUIETLY(intersect(plane, second));
        QUIETLY(std::tuple(plane.distanceTo(s), plane.distanceFromOrigin(), plane.project(s), plane.vectorTo(s)));
        Point<3> on1, on2;
        QUIETLY((crossing(on1, on2, line, other), std::tuple(on1, on2)));
    });
}

template <int N>
void arcIsQuiet(ORN::Arc<N> const& arc, double distance) {
    if (!finite(arc)) return;
    Point<N> point;
    Vector<N> tangent;
    QUIETLY(arc.midpoint());
    QUIETLY(arc.centre());
    QUIETLY(arc.radius());
    QUIETLY(std::tuple(arc.length(), arc.deviation()));
    QUIETLY(arc.extent());
    QUIETLY((arc.measureOff(distance, point, tangent), std::tuple(point, tangent)));
}

TEST(FloatingPoint, ArcsAreQuiet) {
    often([](Grid& grid) {
        double const bulge = grid.any(), t = grid.any();
        QUIETLY(ORNArcLength(bulge));
        QUIETLY(ORNArcSegmentArea(bulge));
        QUIETLY(ORNArcSegmentCoG(bulge));
        std::array<double, 6> c;
        QUIETLY((ORNArcSplit(t, bulge, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]), c));
        auto const a = grid.of<Point<2>>(), b = grid.of<Point<2>>();
        auto const p = grid.of<Point<3>>(), q = grid.of<Point<3>>();
        ORN::Arc<2> const flat{a, bulge, b};
        ORN::Arc<3> const arc{p, bulge, grid.of<Vector<3>>(), q};
        arcIsQuiet(flat, t);
        arcIsQuiet(arc, t);
        arcIsQuiet(ORN::Arc<3>{p, q}, t);
        QUIETLY((ORN::Arc<3>{p, q}));
        ORN::Arc<3> first, second;
        QUIETLY((arc.bisect(first, second), std::tuple(first, second)));

        QUIETLY(ORN::bulgeOf(t));
        QUIETLY(ORN::arcAbout(a, t, Angle::degrees(bulge), Angle::degrees(t)));
        QUIETLY(ORN::arcAbout(a, t, Angle::degrees(bulge), t));
        QUIETLY(ORN::arcThrough(a, grid.of<Point<2>>(), b));
        QUIETLY(ORN::trueExtent(flat));
        std::array<Point<2>, 4> points;
        QUIETLY((ORN::flatten(flat, points), points));
        if (finite(flat.length())) QUIETLY(ORN::piecesWithin(flat, 0.1) * 1.0);
    });
}

/// A singular one has no finite way back; the box of corners that are NaN is empty all the same.
template <int N>
void transformIsQuiet(Transform<N> const& t, bool regular, Grid& grid) {
    auto const p = grid.of<Point<N>>(), q = grid.of<Point<N>>();
    std::array<Point<N>, 2> points{p, q};
    QUIETLY(p * t);
    QUIETLY(p / t);
    QUIETLY((Extent<N>{p, q} * t));
    if (regular) QUIETLY((Extent<N>{p, q} / t));
    QUIETLY((mapPoints(t, points, points), points));
}

template <int N>
void transformsAreQuiet(Grid& grid) {
    double rows[N + 1][N];
    for (auto& row : rows)
        for (double& x : row) x = grid.any();
    auto const any = NonUniformTransform<N>::createFromPod(rows);
    auto const uniform = UniformTransform<N>::createFromPod(rows);
    auto const v = grid.of<Vector<N>>();
    QUIETLY(std::tuple(v * any, any.mirroring() + 0.0, any.homogeneous()));
    QUIETLY(v / any);
    QUIETLY(uniform.scale());
    QUIETLY(any.inverse().homogeneous());
    QUIETLY((NonUniformTransform<N>{any} /= any).homogeneous());
    PerspectiveTransform<N> perspective;
    perspective *= any;
    QUIETLY(perspective.inverse().homogeneous());
    std::unique_ptr<Transform<N>> const before{any.composeWith(PerspectiveTransform<N>{})};
    std::unique_ptr<Transform<N>> const compound{before->composeWith(perspective)};
    bool const regular = finite(any.inverse().homogeneous()) && finite(perspective.inverse().homogeneous()) &&
                         finite(dynamic_cast<PerspectiveTransform<N>&>(*before).inverse().homogeneous());
    transformIsQuiet<N>(any, regular, grid);
    transformIsQuiet<N>(perspective, regular, grid);
    transformIsQuiet<N>(PerspectiveTransform<N>{}, true, grid);
    transformIsQuiet<N>(*before, regular, grid);
    transformIsQuiet<N>(*compound, regular, grid);
    if constexpr (N == 3) {
        std::unique_ptr<Transform<2>> const slice{compound->pSlice()}, plain{before->pSlice()};
        transformIsQuiet<2>(*slice, regular, grid);
        bool const plainRegular = finite(dynamic_cast<PerspectiveTransform<2>&>(*plain).inverse().homogeneous());
        transformIsQuiet<2>(*plain, plainRegular, grid);
        QUIETLY(UniformTransform<3>::rotation(Angle::degrees(rows[0][0]), v).homogeneous());
        QUIETLY(UniformTransform<3>::xyAxes(v, grid.of<Vector<3>>()).homogeneous());
        QUIETLY(UniformTransform<3>::mirror(Plane{v, grid.of<Point<3>>()}).homogeneous());
    } else {
        QUIETLY(uniform.rotation());
        QUIETLY(UniformTransform<2>::mirror(ORN::Line<2>{v, grid.of<Point<2>>()}).homogeneous());
    }
}

TEST(FloatingPoint, TransformsAreQuiet) {
    often([](Grid& grid) {
        transformsAreQuiet<2>(grid);
        transformsAreQuiet<3>(grid);
    });
}

}
