#include "orn/transforms/PointMapping.h"

#include "orn/geometry/Matrix.h"
#include "orn/transforms/CompoundTransformImp.h"
#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/PerspectiveTransform.h"
#include "orn/transforms/ProjectionImp.h"
#include "orn/transforms/SlicedTransformImp.h"
#include "orn/transforms/UniformTransform.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <typeinfo>

#if defined(__GNUC__) && defined(__x86_64__)
#define ORN_LOADS_IN_PAIRS
#include <pmmintrin.h>
#endif

namespace {

template <int N>
using Points = std::span<Point<N> const>;
template <int N>
using Images = std::span<Point<N>>;

// Products with matrices take vectors. The optimiser sees through the two copies.
template <int N>
Vector<N> position(Point<N> const& p) noexcept {
    double coordinates[N];
    p.packToPod(coordinates);
    return Vector<N>{coordinates};
}

template <int N>
Point<N> at(Vector<N> const& position) noexcept {
    double coordinates[N];
    position.packToPod(coordinates);
    return Point<N>{coordinates};
}

// The map holds what it needs by value: through a reference it would be read again after each point that is written.
template <int N, typename Map>
void each(Points<N> in, Images<N> out, Map map) {
    for (std::size_t i = 0; i < in.size(); ++i) out[i] = map(in[i]);
}

#ifdef ORN_LOADS_IN_PAIRS

#define ORN_IN_PAIRS __attribute__((target("sse3"), always_inline))

/// Both coordinates of an image at once, in the order of operations of (p + before)·m + after, of which only one addition
/// is made. A load that doubles a coordinate saves the shuffles that anything older needs.
template <bool forwards>
class InPairs {
public:
    ORN_IN_PAIRS InPairs(Matrix<2> const& m, Vector<2> const& t)
        : row0_{_mm_setr_pd(m[0][0], m[0][1])},
          row1_{_mm_setr_pd(m[1][0], m[1][1])},
          translation_{_mm_setr_pd(t.x(), t.y())},
          backX_{_mm_set1_pd(-t.x())},
          backY_{_mm_set1_pd(-t.y())} {}

    ORN_IN_PAIRS __m128d imageOf(double const* from) const {
        __m128d x = _mm_loaddup_pd(from);
        __m128d y = _mm_loaddup_pd(from + 1);
        if constexpr (!forwards) {
            x = _mm_add_pd(x, backX_);
            y = _mm_add_pd(y, backY_);
        }
        __m128d const image = _mm_add_pd(_mm_mul_pd(x, row0_), _mm_mul_pd(y, row1_));
        return forwards ? _mm_add_pd(image, translation_) : image;
    }

private:
    __m128d row0_, row1_, translation_, backX_, backY_;
};

/// From this many points on, 8 MB, images are written past the caches, which will not hold them until they are read: so the
/// memory that they replace need not be read first. The benchmark's row "mapPoints, 1,000,000 points" falls without it.
constexpr std::size_t streamed = 500'000;

/// Four points at a time: counting would take a third of the instructions of a loop over one.
template <bool forwards>
__attribute__((target("sse3"))) void inPlane(Matrix<2> const& m, Vector<2> const& t, Points<2> in, Images<2> out) {
    InPairs<forwards> const map{m, t};
    // A point of the plane is its two coordinates, x and y, with nothing between two points.
    double const* from = reinterpret_cast<double const*>(in.data());
    double* to = reinterpret_cast<double*>(out.data());
    double const* const end = from + 2 * in.size();
    // Writes past the caches need an alignment of 16 bytes. In place they gain nothing: the points were just read.
    bool const streams = in.size() >= streamed && from != to && reinterpret_cast<std::uintptr_t>(to) % 16 == 0;
    for (; end - from >= 8; from += 8, to += 8) {
        __m128d const images[] = {map.imageOf(from), map.imageOf(from + 2), map.imageOf(from + 4),
                                  map.imageOf(from + 6)};
        for (int i = 0; i < 4; ++i)
            if (streams)
                _mm_stream_pd(to + 2 * i, images[i]);
            else
                _mm_storeu_pd(to + 2 * i, images[i]);
    }
    for (; from != end; from += 2, to += 2) _mm_storeu_pd(to, map.imageOf(from));
    // Such writes keep no order by themselves, and other threads may be told that the images are there.
    if (streams) _mm_sfence();
}

template <bool forwards>
bool mapInPairs(Matrix<2> const& m, Vector<2> const& t, Points<2> in, Images<2> out) {
    // Every x86-64 processor has SSE2, but the oldest lack SSE3.
    if (!__builtin_cpu_supports("sse3")) return false;
    inPlane<forwards>(m, t, in, out);
    return true;
}

#else

template <bool>
bool mapInPairs(Matrix<2> const&, Vector<2> const&, Points<2>, Images<2>) {
    return false;
}

#endif

// Three coordinates make no pairs, so points of space take the plain loop.
template <bool>
bool mapInPairs(Matrix<3> const&, Vector<3> const&, Points<3>, Images<3>) {
    return false;
}

template <int N>
void project(Matrix<N + 1> const matrix, Points<N> in, Images<N> out) {
    each<N>(in, out, [matrix](Point<N> const& p) { return projected(homogeneousImage(p, matrix)); });
}

/// Forwards through each kind of transform.
struct Mapping {
    // Like the other way, it keeps to the operators' order of operations, which decides the last bits of the results.
    template <int N>
    static void affine(Matrix<N> const& matrix, Vector<N> const& t, Points<N> in, Images<N> out) {
        if (mapInPairs<true>(matrix, t, in, out)) return;
        each<N>(in, out, [matrix, t](Point<N> const& p) { return at(Vector<N>{position(p), matrix, t}); });
    }
    template <int N>
    static void perspective(Matrix<N + 1> const& matrix, Points<N> in, Images<N> out) {
        project<N>(matrix, in, out);
    }
    template <int N>
    static Transform<N> const& begin(CompoundTransform<N> const& t) {
        return t.first();
    }
    template <int N>
    static Transform<N> const& end(CompoundTransform<N> const& t) {
        return t.second();
    }
    template <int N>
    static Point<N> one(Point<N> const& p, Transform<N> const& t) {
        return p * t;
    }
};

/// Backwards.
struct Unmapping {
    template <int N>
    static void affine(Matrix<N> const& matrix, Vector<N> const& t, Points<N> in, Images<N> out) {
        Matrix<N> const inverse = matrix.inverse();
        if (mapInPairs<false>(inverse, t, in, out)) return;
        each<N>(in, out, [inverse, t](Point<N> const& p) { return at(Vector<N>{position(p) + -t, inverse}); });
    }
    template <int N>
    static void perspective(Matrix<N + 1> const& matrix, Points<N> in, Images<N> out) {
        project<N>(matrix.inverse(), in, out);
    }
    template <int N>
    static Transform<N> const& begin(CompoundTransform<N> const& t) {
        return t.second();
    }
    template <int N>
    static Transform<N> const& end(CompoundTransform<N> const& t) {
        return t.first();
    }
    template <int N>
    static Point<N> one(Point<N> const& p, Transform<N> const& t) {
        return p / t;
    }
};

template <typename Way, int N>
void run(Transform<N> const& t, Points<N> in, Images<N> out);

/// Through space and back to the plane, a block of 6 KiB at a time, which stays in the nearest cache.
template <typename Way>
void runSliced(Transform<3> const& full, Points<2> in, Images<2> out) {
    std::array<Point<3>, 256> block;
    for (std::size_t start = 0; start < in.size(); start += block.size()) {
        std::size_t const count = std::min(block.size(), in.size() - start);
        Images<3> const lifted{block.data(), count};
        for (std::size_t i = 0; i < count; ++i) lifted[i] = Point<3>{in[start + i].x(), in[start + i].y(), 0.0};
        run<Way, 3>(full, lifted, lifted);
        for (std::size_t i = 0; i < count; ++i) out[start + i] = Point<2>{lifted[i].x(), lifted[i].y()};
    }
}

/// Only the library's own classes are known to map points by their data; any other is asked for every point.
template <typename Way, int N>
void run(Transform<N> const& t, Points<N> in, Images<N> out) {
    // The exact class: one that an application derives from these may map its points otherwise.
    std::type_info const& kind = typeid(t);
    if (kind == typeid(UniformTransform<N>) || kind == typeid(NonUniformTransform<N>)) {
        double rows[N + 1][N];
        static_cast<AffineTransform<N> const&>(t).packToPod(rows);
        Way::template affine<N>(Matrix<N>{rows}, Vector<N>{rows[N]}, in, out);
    } else if (kind == typeid(PerspectiveTransform<N>)) {
        Way::template perspective<N>(static_cast<PerspectiveTransform<N> const&>(t).homogeneous(), in, out);
    } else if (kind == typeid(CompoundTransform<N>)) {
        auto const& compound = static_cast<CompoundTransform<N> const&>(t);
        // The second half works in place, so that no buffer is needed.
        run<Way, N>(Way::begin(compound), in, out);
        run<Way, N>(Way::end(compound), out, out);
    } else {
        if constexpr (N == 2) {
            if (kind == typeid(SlicedTransform<2>))
                return runSliced<Way>(static_cast<SlicedTransform<2> const&>(t).full(), in, out);
        }
        each<N>(in, out, [&t](Point<N> const& p) { return Way::one(p, t); });
    }
}

template <typename Way, int N>
void runChecked(Transform<N> const& t, Points<N> in, Images<N> out, std::string const& text) {
    if (in.size() != out.size()) throw std::logic_error{text + ": the two ranges differ in length"};
    // The same range is allowed, for each point is read before it is written. std::less orders any two pointers.
    std::less<Point<N> const*> const before;
    Point<N> const *const from = in.data(), *const to = out.data();
    if (from != to && before(from, to + out.size()) && before(to, from + in.size()))
        throw std::logic_error{text + ": the two ranges overlap"};
    run<Way, N>(t, in, out);
}

}

void mapPoints(Transform<2> const& t, Points<2> in, Images<2> out) { runChecked<Mapping, 2>(t, in, out, "mapPoints"); }
void mapPoints(Transform<3> const& t, Points<3> in, Images<3> out) { runChecked<Mapping, 3>(t, in, out, "mapPoints"); }
void unmapPoints(Transform<2> const& t, Points<2> in, Images<2> out) {
    runChecked<Unmapping, 2>(t, in, out, "unmapPoints");
}
void unmapPoints(Transform<3> const& t, Points<3> in, Images<3> out) {
    runChecked<Unmapping, 3>(t, in, out, "unmapPoints");
}
