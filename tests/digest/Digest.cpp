// One number for the results of each room of geometry, over some millions of them: the same one for every compiler,
// level of optimisation and system. A change of results that is meant changes it, and the program says to what.
#include "tests/support/Digest.h"
#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"
#include "orn/geometry/Hash.h"
#include "orn/geometry/IntegerExtent.h"
#include "orn/geometry/Line.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/transforms/ArcMapping.h"
#include "orn/transforms/Composition.h"
#include "orn/transforms/PointMapping.h"

#include <cstdio>
#include <initializer_list>
#include <limits>
#include <memory>
#include <random>
#include <tuple>
#include <vector>

namespace {

// Arguments are drawn in braces or one by one: compilers evaluate those in parentheses in the order they like.
class Numbers {
public:
    bool chance(unsigned oneIn) { return engine_() % oneIn == 0; }
    double between(double from, double to) {
        return from + (to - from) * static_cast<double>(engine_() >> 11) * 0x1p-53;
    }
    int whole(int from, int to) { return from + static_cast<int>(engine_() % static_cast<unsigned>(to - from + 1)); }

    // Mostly a coordinate; now and then a whole number, one of any magnitude, or no ordinary one.
    double number() {
        static constexpr double odd[] = {0.0,
                                         -0.0,
                                         1.0,
                                         std::numeric_limits<double>::infinity(),
                                         std::numeric_limits<double>::max(),
                                         std::numeric_limits<double>::denorm_min(),
                                         std::numeric_limits<double>::quiet_NaN()};
        if (chance(40)) return odd[whole(0, 6)];
        if (chance(20)) return whole(-8, 8);
        return chance(20) ? anyMagnitude() : between(-100, 100);
    }
    double anyMagnitude() {
        double const sign = chance(2) ? -1 : 1, mantissa = between(1, 2);
        return sign * mantissa * std::bit_cast<double>(static_cast<std::uint64_t>(whole(1, 2046)) << 52);
    }
    double bulge() {
        if (chance(4)) return number();
        double const sign = chance(2) ? -1 : 1, mantissa = between(1, 2);
        return sign * mantissa * std::bit_cast<double>(static_cast<std::uint64_t>(1023 + whole(-30, 5)) << 52);
    }
    Angle angle() { return chance(2) ? Angle::degrees(number()) : Angle::radians(number()); }

    template <int N>
    Vector<N> vector() {
        double c[N];
        for (double& x : c) x = number();
        return Vector<N>{c};
    }
    template <int N>
    Point<N> point() {
        double c[N];
        vector<N>().packToPod(c);
        return Point<N>{c};
    }
    template <int N>
    Matrix<N> matrix() {
        double rows[N][N];
        for (auto& row : rows) vector<N>().packToPod(row);
        return Matrix<N>{rows};
    }

private:
    std::mt19937_64 engine_{20};
};

class Results : public Digest {
public:
    using Digest::add;
    /// Of what equals itself: a NaN has many forms.
    template <class T>
    void addHash(T const& t) {
        if (t == t) add(std::uint64_t{std::hash<T>{}(t)});
    }
    void add(bool yes) { add(static_cast<std::uint64_t>(yes)); }
    void add(int number) { add(static_cast<std::uint64_t>(number)); }
    void add(Angle const& a) { all(a.cos(), a.sin(), a.tan(), a.radians(), a.degrees(), a.isFinite()); }
    template <template <int> class Tuple, int N>
    requires requires(Tuple<N> t) { t[0] * 1.0; }
    void add(Tuple<N> const& t) {
        for (int i = 0; i < N; ++i) add(t[i]);
        addHash(t);
    }
    template <template <int> class Box, int N>
    requires requires(Box<N> b) { b.lo(0); }
    void add(Box<N> const& b) { all(b.lo(), b.hi(), b.degenerate()); }
    template <int N>
    void add(Matrix<N> const& m) {
        for (int i = 0; i < N; ++i)
            for (int j = 0; j < N; ++j) add(m[i][j]);
    }
    template <int N>
    void add(ORN::Line<N> const& l) {
        all(l.direction(), l.point());
    }
    void add(Plane const& p) { all(p.pointOnPlane(), p.normal(), p.distanceFromOrigin()); }

    template <class... T>
    void all(T const&... results) {
        (add(results), ...);
    }
};

void angles(Numbers& n, Results& r) {
    Angle const a = n.angle(), b = n.angle();
    double const x = n.number(), y = n.number();
    int const times = n.whole(-40, 40);
    r.all(a, a + b, a - b, -a, a * times, Angle::cosSin(x, y), closerThanDegrees(a, b, y), closerThanRadians(a, b, y));
}

template <int N>
void vectorsOf(Numbers& n, Results& r) {
    Vector<N> const u = n.vector<N>(), v = n.vector<N>();
    Matrix<N> const m = n.matrix<N>(), k = n.matrix<N>();
    double const s = n.number();
    r.all(u + v, u - v, u * s, u / s, -u, u.length(), u.lengthSquared(), u.unit(), u.isNaN(), u.isFinite(), dot(u, v));
    r.all(Vector<N>{u, m}, Vector<N>{u, m, v}, m * k, m / k, m.inverse(), m.transpose());
    if constexpr (N < 4) {
        Point<N> const p = n.point<N>(), q = n.point<N>();
        Extent<N> const e{p, q}, f{q, q + u};
        r.all(m.determinant(), p + u, p - u, p - q, interp(p, q, s), midpoint(p, q));
        r.all(e, e + p, e | f, e & f, e.dilate(s), e.centre(), e.corner(5), e <= f, e < f, e == f, e.contains(q));
        Extent<N> changed = e | f;
        r.add(changed.update(e, f));
        r.add(changed);
    }
}

template <int N>
void intsOf(Numbers& n, Results& r) {
    int c[4][N];
    for (auto& row : c)
        for (int& x : row) x = n.whole(-1000, 1000);
    IVector<N> const u{c[0]}, v{c[1]};
    IPoint<N> const p{c[2]}, q{c[3]};
    IPoint<N> moved = p, back = p;
    moved += u;
    back -= v;
    IExtent<N> const e{p, q}, f{q, moved};
    r.all(u + v, u - v, u * n.whole(-9, 9), -u, moved, back, e, e + back, e | f, e & f, e <= f, e.contains(back));
}

void vectors(Numbers& n, Results& r) {
    vectorsOf<1>(n, r);
    vectorsOf<2>(n, r);
    vectorsOf<3>(n, r);
    vectorsOf<4>(n, r);
    intsOf<2>(n, r);
    intsOf<3>(n, r);
    Matrix<3> matrices[] = {n.matrix<3>(), n.matrix<3>(), n.matrix<3>()};
    invert(matrices, matrices);
    for (auto const& inverse : matrices) r.add(inverse);

    double const length = n.number();
    Angle const a = n.angle(), b = n.angle();
    Vector<2> const u = n.vector<2>(), v = n.vector<2>();
    r.all(Vector<2>{length, a}, u.perpendicular(), u.theta(), u.quadrant(), cross(u, v));
    Vector<3> const x = n.vector<3>(), y = n.vector<3>();
    r.all(Vector<3>::altAz(length, a, b), x.altitude(), x.azimuth(), cross(x, y));

    Point<2> const p = n.point<2>();
    Point<3> const q = n.point<3>(), o = n.point<3>();
    ORN::Line<3> const l1{x, q}, l2{y, o};
    Plane const plane{x, o};
    Point<3> on1, on2;
    ORN::crossing(on1, on2, l1, l2);
    r.all(ORN::intersect(ORN::Line<2>{u, p}, ORN::Line<2>{v, Point<2>{}}), ORN::Line<3>::through(q, o), on1, on2);
    r.all(plane, -plane, Plane{q, o, on1}, plane.distanceTo(q), plane.vectorTo(q), plane.project(q));
    r.all(intersect(l1, plane), intersect(plane, Plane{y, q}), ORN::Line<2>::through(p, Point<2>{} + u));
}

template <int N>
void mapped(Numbers& n, Results& r, Transform<N> const& t) {
    std::vector<Point<N>> points(3), there(3), back(3);
    for (auto& p : points) p = n.point<N>();
    mapPoints(t, points, there);
    unmapPoints(t, points, back);
    for (std::size_t i = 0; i < points.size(); ++i) r.all(points[i] * t, points[i] / t, there[i], back[i]);
    Extent<N> const e{points[0], points[1]};
    r.all(e * t, e / t);
}

template <int N>
void affine(Numbers& n, Results& r, AffineTransform<N> const& t) {
    double rows[N + 1][N];
    t.packToPod(rows);
    for (auto const& row : rows)
        for (double const x : row) r.add(x);
    Vector<N> const v = n.vector<N>();
    r.all(v * t, v / t, t.translation(), t.homogeneous(), t.mirroring());
    mapped<N>(n, r, t);
}

template <int N>
std::tuple<UniformTransform<N>, UniformTransform<N>, NonUniformTransform<N>> someTransforms(Numbers& n) {
    auto t = UniformTransform<N>::scale(n.number()), mirror = t;
    Angle const a = n.angle();
    Vector<N> const x = n.vector<N>(), y = n.vector<N>();
    Point<N> const p = n.point<N>();
    if constexpr (N == 2) {
        t *= UniformTransform<2>::rotation(a);
        mirror = UniformTransform<2>::mirror({x.unit(), p});
        return {t *= UniformTransform<2>::translation(y), mirror, NonUniformTransform<2>::axes(x, y)};
    } else {
        t *= UniformTransform<3>::rotation(a, x);
        t *= n.chance(3) ? UniformTransform<3>::yzAxes(x, y) : UniformTransform<3>::xyAxes(x, y);
        mirror = UniformTransform<3>::mirror(Plane{x, p});
        return {t *= UniformTransform<3>::translation(y), mirror, NonUniformTransform<3>::axes(x, y, cross(x, y) * 3)};
    }
}

template <int N>
void transformsOf(Numbers& n, Results& r) {
    auto [uniform, mirror, nonUniform] = someTransforms<N>(n);
    affine<N>(n, r, uniform);
    affine<N>(n, r, mirror);
    affine<N>(n, r, nonUniform);
    affine<N>(n, r, uniform.inverse());
    affine<N>(n, r, nonUniform.inverse());
    r.add(uniform.scale());
    if constexpr (N == 2) r.add(uniform.rotation());
    uniform /= mirror;
    affine<N>(n, r, uniform);
    affine<N>(n, r, nonUniform *= uniform);
    affine<N>(n, r, nonUniform /= mirror);

    affine<N>(n, r, compose(uniform, mirror));
    affine<N>(n, r, compose(nonUniform, mirror));

    auto perspective = compose(PerspectiveTransform<N>{}, nonUniform);
    r.all(perspective.homogeneous(), perspective.inverse().homogeneous());
    r.add((perspective /= mirror).homogeneous());
    mapped<N>(n, r, perspective);
    mapped(n, r, *compose<N>(uniform, perspective));
    auto const compound = compose<N>(perspective, perspective.inverse());
    mapped(n, r, *compound);
    mapped(n, r, *inverseOf(*compound));
    if constexpr (N == 3) {
        mapped(n, r, *sliceOf<3>(nonUniform));
        mapped(n, r, *sliceOf<3>(perspective));
        mapped(n, r, *inverseOf(*sliceOf(*compound)));
    }
}

void transforms(Numbers& n, Results& r) {
    transformsOf<2>(n, r);
    transformsOf<3>(n, r);
}

template <int N>
void arc(Numbers& n, Results& r, ORN::Arc<N> const& a) {
    r.addHash(a);
    r.all(a.start(), a.bulge(), a.end(), a.midpoint(), a.centre(), a.radius(), a.length(), a.deviation(), a.extent());
    double const distance = n.chance(4) ? n.number() : a.length() * n.between(-0.5, 1.5);
    Point<N> p;
    Vector<N> tangent;
    bool const within = a.measureOff(distance, p, tangent);
    r.all(within, p, tangent);
}

void arcsMade(Numbers& n, Results& r) {
    double const radius = n.number(), sweep = n.number(), bulge = n.bulge();
    Angle const from = n.angle(), to = n.angle();
    Point<2> const p = n.point<2>(), q = n.point<2>(), on = n.point<2>();
    for (auto const& a : {ORN::arcAbout(p, radius, from, to), ORN::arcAbout(p, radius, from, sweep),
                          ORN::arcThrough(p, on, q), ORN::circleAbout(p, radius)[1], ORN::Arc<2>{p, bulge, q}}) {
        Point<2> points[5];
        ORN::flatten(a, points);
        for (auto const& point : points) r.add(point);
        r.all(a.start(), a.bulge(), a.end(), ORN::trueExtent(a), ORN::piecesWithin(a, 0.01));
    }
    r.add(ORN::bulgeOf(sweep));
}

void arcs(Numbers& n, Results& r) {
    double const b = n.bulge(), t = n.chance(4) ? n.number() : n.between(-1, 1);
    r.all(ORNArcLength(b), ORNArcSegmentArea(b), ORNArcSegmentCoG(b));
    double out[6];
    ORNArcSplit(t, b, &out[0], &out[1], &out[2], &out[3], &out[4], &out[5]);
    for (double const x : out) r.add(x);

    Point<2> const p = n.point<2>(), q = n.point<2>();
    arc<2>(n, r, {p, b, q});
    Point<3> const start = n.point<3>(), end = n.point<3>();
    Vector<3> const axis = cross(end - start, n.vector<3>());
    ORN::Arc<3> const spatial{start, b, axis, end};
    arc<3>(n, r, spatial);
    arc<3>(n, r, {start, end});
    arcsMade(n, r);
    ORN::Arc<3> first, second;
    spatial.bisect(first, second);
    r.all(spatial.plane(), first.bulge(), first.end(), second.start(), second.bulge());
}

void ellipse(Results& r, ORN::EllipticArc const& e, double t) {
    Point<2> points[5];
    ORN::flatten(e, points);
    for (auto const& point : points) r.add(point);
    r.all(e.centre, e.major, e.minor, e.from, e.sweep, e.at(t), e.start(), e.end(), e.extent());
    r.add(ORN::piecesWithin(e, 0.01));
}

template <int N>
void arcThereAndBack(Numbers& n, Results& r, ORN::Arc<N> const& a) {
    auto const [uniform, mirror, nonUniform] = someTransforms<N>(n);
    for (auto const& b : {a * uniform, a / uniform, a * mirror, a / mirror}) r.all(b.start(), b.bulge(), b.end());
}

void ellipses(Numbers& n, Results& r) {
    auto const [uniform, mirror, nonUniform] = someTransforms<2>(n);
    Point<2> const p = n.point<2>(), q = n.point<2>();
    Vector<2> const u = n.vector<2>(), v = n.vector<2>();
    double const b = n.bulge(), first = n.number(), sweep = n.between(-6, 6), t = n.number();
    auto const conjugate = ORN::EllipticArc::conjugate(p, u, v, first, sweep);
    ellipse(r, conjugate, t);
    ellipse(r, conjugate * nonUniform, t);
    ellipse(r, ORN::ellipticArc({p, b, q}, nonUniform), t);
    arcThereAndBack<2>(n, r, {p, b, q});
    Point<3> const start = n.point<3>(), end = n.point<3>();
    arcThereAndBack<3>(n, r, {start, b, n.vector<3>(), end});
}

}

int main() {
    struct {
        char const* room;
        void (*results)(Numbers&, Results&);
        int rounds;
        std::uint64_t expected;
    } const rooms[] = {
        {"angles", angles, 40000, 0x74a2948d85c049a7},
        {"vectors, points, boxes, matrices, lines and planes", vectors, 10000, 0x9d1d205ff7a27bc6},
        {"transforms", transforms, 1500, 0x7e13e6346aad47c7},
        {"mapped and elliptic arcs", ellipses, 5000, 0x93b4b2b200443836},
        {"arcs", arcs, 20000, 0xf3bf58662f857031},
    };
    bool same = true;
    for (auto const& [room, results, rounds, expected] : rooms) {
        Numbers numbers;
        Results digest;
        for (int i = 0; i < rounds; ++i) results(numbers, digest);
        if (digest.value() == expected) continue;
        same = false;
        std::printf("The digest of %s is 0x%016llx, not 0x%016llx. Was the change of results meant?\n", room,
                    static_cast<unsigned long long>(digest.value()), static_cast<unsigned long long>(expected));
    }
    return same ? 0 : 1;
}
