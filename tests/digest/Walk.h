/// A walk over everything public in geometry and transforms: numbers go in, and each result is handed over.
#pragma once

#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"
#include "orn/geometry/Hash.h"
#include "orn/geometry/IntegerExtent.h"
#include "orn/geometry/Line.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/transforms/ArcMapping.h"
#include "orn/transforms/Composition.h"
#include "orn/transforms/PointMapping.h"
#include "tests/support/Digest.h"
#include "tests/support/Random.h"

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>

namespace walk {

// Arguments are drawn in braces or one by one: compilers evaluate those in parentheses in the order they like.
using Numbers = AnyGeometry;

/// Values of geometry are the doubles that they hold.
template <class T>
bool finite(T const& t) {
    if constexpr (sizeof(T) % sizeof(double) == 0) {
        auto const numbers = std::bit_cast<std::array<double, sizeof(T) / sizeof(double)>>(t);
        return std::ranges::all_of(numbers, [](double x) { return std::isfinite(x); });
    } else {
        return true;
    }
}

class Results : public Digest {
public:
    using Digest::add;
    virtual ~Results() = default;

    /// Takes a result before the next one of the line is computed.
    template <class T>
    Results& operator<<(T const& t) {
        computed(finite(t));
        add(t);
        return *this;
    }

    /// Whether the walk goes on with these as its input. Computing them does not count as a result.
    template <class... T>
    bool takes(T const&... input) {
        computed(false);
        return takesAll((finite(input) && ...));
    }

protected:
    virtual void computed(bool) {}
    virtual bool takesAll(bool) { return true; }

private:
    /// Of what equals itself: a NaN has many forms.
    template <class T>
    void addHash(T const& t) {
        if (t == t) add(std::uint64_t{std::hash<T>{}(t)});
    }
    void add(bool yes) { add(static_cast<std::uint64_t>(yes)); }
    void add(int number) { add(static_cast<std::uint64_t>(number)); }
    void add(Angle const& a) { *this << a.cos() << a.sin() << a.tan() << a.radians() << a.degrees() << a.isFinite(); }
    template <template <int> class Tuple, int N>
    requires requires(Tuple<N> t) { t[0] * 1.0; }
    void add(Tuple<N> const& t) {
        for (int i = 0; i < N; ++i) add(t[i]);
        addHash(t);
    }
    template <template <int> class Box, int N>
    requires requires(Box<N> b) { b.lo(0); }
    void add(Box<N> const& b) { *this << b.lo() << b.hi() << b.degenerate(); }
    template <int N>
    void add(Matrix<N> const& m) {
        for (int i = 0; i < N * N; ++i) add(m[i / N][i % N]);
    }
    template <int N>
    void add(ORN::Line<N> const& l) {
        *this << l.direction() << l.point();
    }
    void add(Plane const& p) { *this << p.pointOnPlane() << p.normal() << p.distanceFromOrigin(); }
    template <int N>
    void add(ORN::Arc<N> const& a) {
        addHash(a);
        *this << a.start() << a.bulge() << a.end();
    }
    void add(ORN::EllipticArc const& e) { *this << e.centre << e.major << e.minor << e.from << e.sweep; }
    template <class T, std::size_t N>
    void add(std::array<T, N> const& all) {
        for (T const& t : all) add(t);
    }
};

inline void angles(Numbers& n, Results& r) {
    Angle const a = n.angle(), b = n.angle();
    double const x = n.number(), y = n.number();
    int const times = n.whole(-40, 40);
    r << a << a + b << a - b << -a << a * times << Angle::cosSin(x, y);
    r << closerThanDegrees(a, b, y) << closerThanRadians(a, b, y);
}

template <int N>
void vectorsOf(Numbers& n, Results& r) {
    Vector<N> const u = n.vector<N>(), v = n.vector<N>();
    Matrix<N> const m = n.matrix<N>(), k = n.matrix<N>();
    double const s = n.number();
    r << u + v << u - v << u * s << u / s << -u << u.length() << u.lengthSquared() << u.unit();
    r << u.isNaN() << u.isFinite() << dot(u, v) << Vector<N>{u, m} << Vector<N>{u, m, v};
    r << m * k << m / k << m.inverse() << m.transpose();
    if constexpr (N < 4) {
        Point<N> const p = n.point<N>(), q = n.point<N>();
        Extent<N> const e{p, q}, f{q, q + u};
        r << m.determinant() << p + u << p - u << p - q << interp(p, q, s) << midpoint(p, q);
        r << e << e + p << (e | f) << (e & f) << e.dilate(s) << e.centre() << e.corner(5);
        r << (e <= f) << (e < f) << (e == f) << e.contains(q);
        Extent<N> changed = e | f;
        r << changed.update(e, f) << changed;
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
    r << u + v << u - v << u * n.whole(-9, 9) << -u << moved << back << e << e + back;
    r << (e | f) << (e & f) << (e <= f) << e.contains(back);
}

inline void vectors(Numbers& n, Results& r) {
    vectorsOf<1>(n, r);
    vectorsOf<2>(n, r);
    vectorsOf<3>(n, r);
    vectorsOf<4>(n, r);
    intsOf<2>(n, r);
    intsOf<3>(n, r);
    std::array matrices{n.matrix<3>(), n.matrix<3>(), n.matrix<3>()};
    invert(matrices, matrices);
    r << matrices;

    double const length = n.number();
    Angle const a = n.angle(), b = n.angle();
    Vector<2> const u = n.vector<2>(), v = n.vector<2>();
    r << Vector<2>{length, a} << u.perpendicular() << u.theta() << u.quadrant() << cross(u, v);
    Vector<3> const x = n.vector<3>(), y = n.vector<3>();
    r << Vector<3>::altAz(length, a, b) << x.altitude() << x.azimuth() << cross(x, y);

    Point<2> const p = n.point<2>();
    Point<3> const q = n.point<3>(), o = n.point<3>();
    ORN::Line<3> const l1{x, q}, l2{y, o};
    r << ORN::intersect(ORN::Line<2>{u, p}, ORN::Line<2>{v, Point<2>{}}) << ORN::Line<3>::through(q, o);
    r << ORN::Line<2>::through(p, Point<2>{} + u);
    Plane const plane{x, o}, through{q, o, n.point<3>()};
    r << std::array{plane, -plane, through};
    if (!r.takes(plane, through)) return;
    std::array<Point<3>, 2> on;
    ORN::crossing(on[0], on[1], l1, l2);
    r << on << plane.distanceTo(q) << plane.vectorTo(q) << plane.project(q);
    r << intersect(l1, plane) << intersect(plane, through);
}

template <int N>
void mapped(Numbers& n, Results& r, Transform<N> const& t) {
    std::array<Point<N>, 3> points, there, back;
    for (auto& p : points) p = n.point<N>();
    mapPoints(t, points, there);
    r << there;
    unmapPoints(t, points, back);
    r << back;
    for (auto const& p : points) r << p * t << p / t;
    Extent<N> const e{points[0], points[1]};
    // The box of corners that are NaN is empty all the same.
    if (r.takes(points[0] * t, points[1] * t)) r << e * t;
    if (r.takes(points[0] / t, points[1] / t)) r << e / t;
}

template <int N>
void affine(Numbers& n, Results& r, AffineTransform<N> const& t) {
    if (!r.takes(t.homogeneous())) return;
    double rows[N + 1][N];
    t.packToPod(rows);
    for (auto const& row : rows)
        for (double const x : row) r << x;
    Vector<N> const v = n.vector<N>();
    r << v * t << v / t << t.translation() << t.homogeneous() << t.mirroring();
    mapped<N>(n, r, t);
}

template <int N>
std::tuple<UniformTransform<N>, UniformTransform<N>, NonUniformTransform<N>> someTransforms(Numbers& n, Results& r) {
    Angle const a = n.angle();
    Vector<N> const x = n.vector<N>(), y = n.vector<N>();
    Point<N> const p = n.point<N>();
    auto const made = [&r](auto const& t) {
        r << t.homogeneous();
        return t;
    };
    auto t = made(UniformTransform<N>::scale(n.number()));
    r << t.scale();
    if constexpr (N == 2) {
        made(t *= made(UniformTransform<2>::rotation(a)));
        r << t.rotation();
        auto const mirror = made(UniformTransform<2>::mirror({x.unit(), p}));
        return {made(t *= UniformTransform<2>::translation(y)), mirror, made(NonUniformTransform<2>::axes(x, y))};
    } else {
        made(t *= made(UniformTransform<3>::rotation(a, x)));
        made(t *= made(n.chance(3) ? UniformTransform<3>::yzAxes(x, y) : UniformTransform<3>::xyAxes(x, y)));
        auto const mirror = made(UniformTransform<3>::mirror(Plane{x, p}));
        return {made(t *= UniformTransform<3>::translation(y)), mirror,
                made(NonUniformTransform<3>::axes(x, y, cross(x, y) * 3))};
    }
}

template <int N>
void transformsOf(Numbers& n, Results& r) {
    auto [uniform, mirror, nonUniform] = someTransforms<N>(n, r);
    auto perspective = compose(PerspectiveTransform<N>{}, nonUniform);
    r << perspective.homogeneous();
    r << uniform.inverse().homogeneous() << nonUniform.inverse().homogeneous() << perspective.inverse().homogeneous();
    affine<N>(n, r, uniform);
    affine<N>(n, r, mirror);
    affine<N>(n, r, nonUniform);
    affine<N>(n, r, uniform.inverse());
    affine<N>(n, r, nonUniform.inverse());
    uniform /= mirror;
    affine<N>(n, r, uniform);
    affine<N>(n, r, nonUniform *= uniform);
    affine<N>(n, r, nonUniform /= mirror);

    affine<N>(n, r, compose(uniform, mirror));
    affine<N>(n, r, compose(nonUniform, mirror));
    r << (perspective /= mirror).homogeneous();
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

inline void transforms(Numbers& n, Results& r) {
    transformsOf<2>(n, r);
    transformsOf<3>(n, r);
}

template <int N>
void arc(Numbers& n, Results& r, ORN::Arc<N> const& a) {
    r << a << a.midpoint() << a.centre() << a.radius() << a.length() << a.deviation() << a.extent();
    double const distance = n.chance(4) ? n.number() : a.length() * n.number(-0.5, 1.5);
    if (!r.takes(a, distance / a.length())) return;
    Point<N> p;
    Vector<N> tangent;
    bool const within = a.measureOff(distance, p, tangent);
    r << ORN::Line<N>{tangent, p} << within;
}

inline void arcsMade(Numbers& n, Results& r) {
    double const radius = n.number(), sweep = n.number(), bulge = n.bulge();
    Angle const from = n.angle(), to = n.angle();
    Point<2> const p = n.point<2>(), q = n.point<2>(), on = n.point<2>();
    auto const made = [&r](ORN::Arc<2> const& a) {
        r << a;
        if (!r.takes(a, a.length())) return;
        std::array<Point<2>, 5> points;
        ORN::flatten(a, points);
        r << points << ORN::trueExtent(a) << ORN::piecesWithin(a, 0.01);
    };
    made({p, bulge, q});
    made(ORN::arcAbout(p, radius, from, to));
    made(ORN::arcAbout(p, radius, from, sweep));
    made(ORN::arcThrough(p, on, q));
    made(ORN::circleAbout(p, radius)[1]);
    r << ORN::bulgeOf(sweep);
}

inline void arcs(Numbers& n, Results& r) {
    double const b = n.bulge(), t = n.chance(4) ? n.number() : n.number(-1, 1);
    r << ORNArcLength(b) << ORNArcSegmentArea(b) << ORNArcSegmentCoG(b);
    std::array<double, 6> out;
    ORNArcSplit(t, b, &out[0], &out[1], &out[2], &out[3], &out[4], &out[5]);
    r << out;

    Point<2> const p = n.point<2>(), q = n.point<2>();
    arc<2>(n, r, {p, b, q});
    Point<3> const start = n.point<3>(), end = n.point<3>();
    Vector<3> const axis = cross(end - start, n.vector<3>());
    ORN::Arc<3> const spatial{start, b, axis, end};
    r << spatial << ORN::Arc<3>{start, end};
    if (!r.takes(spatial)) return;
    arc<3>(n, r, spatial);
    arc<3>(n, r, {start, end});
    arcsMade(n, r);
    std::array<ORN::Arc<3>, 2> halves;
    spatial.bisect(halves[0], halves[1]);
    r << halves << spatial.plane();
}

inline void ellipse(Results& r, ORN::EllipticArc const& e, double t) {
    r << e << e.at(t) << e.start() << e.end();
    if (!r.takes(e)) return;
    std::array<Point<2>, 5> points;
    ORN::flatten(e, points);
    r << points << e.extent() << ORN::piecesWithin(e, 0.01);
}

template <int N>
void arcThereAndBack(Numbers& n, Results& r, ORN::Arc<N> const& a) {
    r << a;
    auto const [uniform, mirror, nonUniform] = someTransforms<N>(n, r);
    r << a * uniform << a / uniform << a * mirror << a / mirror;
}

inline void ellipses(Numbers& n, Results& r) {
    auto const [uniform, mirror, nonUniform] = someTransforms<2>(n, r);
    Point<2> const p = n.point<2>(), q = n.point<2>();
    Vector<2> const u = n.vector<2>(), v = n.vector<2>();
    double const b = n.bulge(), first = n.number(), sweep = n.number(-6, 6), t = n.number();
    auto const conjugate = ORN::EllipticArc::conjugate(p, u, v, first, sweep);
    ellipse(r, conjugate, t);
    ellipse(r, conjugate * nonUniform, t);
    ellipse(r, ORN::ellipticArc({p, b, q}, nonUniform), t);
    arcThereAndBack<2>(n, r, {p, b, q});
    Point<3> const start = n.point<3>(), end = n.point<3>();
    arcThereAndBack<3>(n, r, {start, b, n.vector<3>(), end});
}

struct Room {
    char const* name;
    void (*results)(Numbers&, Results&);
    int rounds;
};

inline constexpr Room rooms[] = {
    {"angles", angles, 40000},
    {"vectors, points, boxes, matrices, lines and planes", vectors, 10000},
    {"transforms", transforms, 1500},
    {"mapped and elliptic arcs", ellipses, 5000},
    {"arcs", arcs, 20000},
};

}
