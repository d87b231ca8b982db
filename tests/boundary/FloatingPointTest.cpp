#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/transforms/PointMapping.h"
#include "tests/support/Transforms.h"

#include <cfenv>
#include <tuple>

namespace {

bool finite(double x) { return std::isfinite(x); }
template <typename T>
auto finite(T const& t) -> decltype(t.isFinite()) {
    return t.isFinite();
}
template <int N>
bool finite(Extent<N> const& e) {
    return e.lo().isFinite() && e.hi().isFinite();
}
template <int N>
bool finite(Matrix<N> const& m) {
    for (int i = 0; i < N * N; ++i)
        if (!finite(m[i / N][i % N])) return false;
    return true;
}
template <int N>
bool finite(ORN::Line<N> const& line) {
    return finite(line.direction()) && finite(line.point());
}
bool finite(Plane const& plane) { return finite(plane.normal()) && finite(plane.pointOnPlane()); }
bool finite(ORN::Arc<2> const& arc) { return finite(arc.start()) && finite(arc.bulge()) && finite(arc.end()); }
bool finite(ORN::Arc<3> const& arc) {
    return finite(arc.start()) && finite(arc.bulge()) && finite(arc.axis()) && finite(arc.end());
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
    template <typename T, int N>
    T of() {
        double c[N];
        for (double& x : c) x = any();
        return T{c};
    }
    template <int N>
    Point<N> point() {
        return of<Point<N>, N>();
    }
    template <int N>
    Vector<N> vector() {
        return of<Vector<N>, N>();
    }
    template <int N>
    Matrix<N> matrix() {
        double rows[N][N];
        for (auto& row : rows)
            for (double& x : row) x = any();
        return Matrix<N>{rows};
    }
};

class FloatingPoint : public testing::Test {
protected:
    template <typename Body>
    static void often(Body body) {
        for (unsigned int seed = 0; seed < 4000 && !HasFailure(); ++seed) {
            Grid grid{seed};
            body(grid);
        }
    }
};

TEST_F(FloatingPoint, AnglesVectorsAndPointsAreQuiet) {
    often([](Grid& grid) {
        double const x = grid.any(), y = grid.any();
        Angle const a = Angle::degrees(x), b = Angle::cosSin(x, y);
        QUIETLY(Angle::radians(x));
        QUIETLY(std::tuple(Angle::cosSin(x, y), a * 3, a + b, a - b, a.degrees(), b.radians()));
        QUIETLY(a.tan());
        QUIETLY((Vector<2>{x, a}));
        Vector<2> const v = grid.vector<2>();
        Vector<3> const u = grid.vector<3>(), w = grid.vector<3>();
        QUIETLY(std::tuple(v.length(), v.lengthSquared(), cross(v, v), v.perpendicular(), v.quadrant() * 1.0));
        QUIETLY(v.theta());
        QUIETLY(v.unit());
        QUIETLY(u.unit());
        QUIETLY(u.altitude());
        QUIETLY(u.azimuth());
        QUIETLY(std::tuple(Vector<3>::altAz(x, a, b), cross(u, w), dot(u, w), u.length()));
        QUIETLY(grid.vector<4>().unit());
        QUIETLY(grid.vector<1>().unit());
        Point<3> const p = grid.point<3>(), q = grid.point<3>();
        Extent<3> e{p, q};
        QUIETLY(
            std::tuple(interp(p, q, x), midpoint(p, q), p - q, p + u, e, e.dilate(x), e.centre(), e & Extent<3>{q, q}));
        QUIETLY(e.update(Extent<3>{p, p}, Extent<3>{}) + e.contains(q) + (e < Extent<3>{}) + 0.0);
    });
}

TEST_F(FloatingPoint, MatricesLinesAndPlanesAreQuiet) {
    often([](Grid& grid) {
        Matrix<1> const m1 = grid.matrix<1>();
        Matrix<2> const m2 = grid.matrix<2>();
        Matrix<3> const m3 = grid.matrix<3>();
        Matrix<4> const m4 = grid.matrix<4>();
        QUIETLY(std::tuple(m2.determinant(), m3.determinant(), m2 * m2, m4 * m4));
        QUIETLY(m1.inverse());
        QUIETLY(m2.inverse());
        QUIETLY(m3.inverse());
        QUIETLY([&] {
            Matrix<3> all[3] = {m3, m3, m3};
            invert(all, all);
            return all[2];
        }());
        QUIETLY(m4.inverse());
        Point<2> const a = grid.point<2>(), b = grid.point<2>();
        Point<3> const p = grid.point<3>(), q = grid.point<3>(), r = grid.point<3>(), s = grid.point<3>();
        auto const line = ORN::Line<3>::through(p, q), other = ORN::Line<3>::through(r, s);
        Plane const plane{p, q, r}, second{q - s, r};
        QUIETLY(ORN::Line<2>::through(a, b));
        if (finite(line) && finite(other) && finite(plane) && finite(second)) {
            QUIETLY(intersect(ORN::Line<2>::through(a, b), ORN::Line<2>{Vector<2>{1, 0}, a}));
            QUIETLY(intersect(line, plane));
            QUIETLY(intersect(plane, second));
            QUIETLY(std::tuple(plane.distanceTo(s), plane.distanceFromOrigin(), plane.project(s), plane.vectorTo(s)));
            QUIETLY([&] {
                Point<3> on1, on2;
                crossing(on1, on2, line, other);
                return std::tuple(on1, on2);
            }());
        }
    });
}

template <int N>
void arcIsQuiet(ORN::Arc<N> const& arc, double distance) {
    if (!finite(arc)) return;
    QUIETLY(arc.midpoint());
    QUIETLY(arc.centre());
    QUIETLY(arc.radius());
    QUIETLY(std::tuple(arc.length(), arc.deviation()));
    QUIETLY(arc.extent());
    QUIETLY([&] {
        Point<N> point;
        Vector<N> tangent;
        arc.measureOff(distance, point, tangent);
        return std::tuple(point, tangent);
    }());
}

TEST_F(FloatingPoint, ArcsAreQuiet) {
    often([](Grid& grid) {
        double const bulge = grid.any(), t = grid.any();
        QUIETLY(ORNArcLength(bulge));
        QUIETLY(ORNArcSegmentArea(bulge));
        QUIETLY(ORNArcSegmentCoG(bulge));
        QUIETLY([&] {
            double c[6];
            ORNArcSplit(t, bulge, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
            return std::tuple(Vector<4>{c}, c[4], c[5]);
        }());
        ORN::Arc<2> const flat{grid.point<2>(), bulge, grid.point<2>()};
        ORN::Arc<3> const arc{grid.point<3>(), bulge, grid.vector<3>(), grid.point<3>()};
        arcIsQuiet(flat, t);
        arcIsQuiet(arc, t);
        arcIsQuiet(ORN::Arc<3>{arc.start(), arc.end()}, t);
        QUIETLY((ORN::Arc<3>{arc.start(), arc.end()}));
        QUIETLY([&] {
            ORN::Arc<3> first, second;
            arc.bisect(first, second);
            return std::tuple(first, second);
        }());

        QUIETLY(ORN::bulgeOf(t));
        QUIETLY(ORN::arcAbout(flat.start(), t, Angle::degrees(bulge), Angle::degrees(t)));
        QUIETLY(ORN::arcAbout(flat.start(), t, Angle::degrees(bulge), t));
        QUIETLY(ORN::arcThrough(flat.start(), grid.point<2>(), flat.end()));
        QUIETLY(ORN::trueExtent(flat));
        QUIETLY([&] {
            Point<2> points[4];
            ORN::flatten(flat, points);
            return std::tuple(points[0], points[1], points[2], points[3]);
        }());
        if (finite(flat.length())) QUIETLY(ORN::piecesWithin(flat, 0.1) * 1.0);
    });
}

/// A singular one has no finite way back; the box of corners that are NaN is empty all the same.
template <int N>
void transformIsQuiet(Transform<N> const& t, bool regular, Grid& grid) {
    Point<N> const p = grid.point<N>(), q = grid.point<N>();
    QUIETLY(p * t);
    QUIETLY(p / t);
    QUIETLY((Extent<N>{p, q} * t));
    if (regular) QUIETLY((Extent<N>{p, q} / t));
    QUIETLY([&] {
        Point<N> points[2] = {p, q};
        mapPoints(t, points, points);
        return std::tuple(points[0], points[1]);
    }());
}

template <int N>
void transformsAreQuiet(Grid& grid) {
    double rows[N + 1][N];
    for (auto& row : rows)
        for (double& x : row) x = grid.any();
    auto const any = NonUniformTransform<N>::createFromPod(rows);
    auto const uniform = UniformTransform<N>::createFromPod(rows);
    Vector<N> const v = grid.vector<N>();
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
        QUIETLY(UniformTransform<3>::xyAxes(v, grid.vector<3>()).homogeneous());
        QUIETLY(UniformTransform<3>::mirror(Plane{v, grid.point<3>()}).homogeneous());
    } else {
        QUIETLY(uniform.rotation());
        QUIETLY(UniformTransform<2>::mirror(ORN::Line<2>{v, grid.point<2>()}).homogeneous());
    }
}

TEST_F(FloatingPoint, TransformsAreQuiet) {
    often([](Grid& grid) {
        transformsAreQuiet<2>(grid);
        transformsAreQuiet<3>(grid);
    });
}

}
