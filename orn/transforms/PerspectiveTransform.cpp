#include "orn/transforms/PerspectiveTransform.h"

#include "orn/transforms/ProjectionImp.h"

#include <cmath>
#include <limits>
#include <memory>
#include <ostream>

namespace {

/// (x, [y,] z) to (x, [y,] −1) over z.
template <int N>
constexpr Matrix<N + 1> unitPerspective() {
    double rows[N + 1][N + 1] = {};
    for (int i = 0; i < N - 1; ++i) rows[i][i] = 1.0;
    rows[N - 1][N] = 1.0;
    rows[N][N - 1] = -1.0;
    return Matrix<N + 1>{rows};
}

/// The point far out on one axis.
template <int N>
Point<N> onAxis(int axis, double coordinate) {
    double coordinates[N] = {};
    coordinates[axis] = coordinate;
    return Point<N>{coordinates};
}

/// Grows by an image X/w. On the plane of the eye, where w is 0, coordinates are infinite; 0/0 is nowhere and adds
/// nothing. Nothing is divided by zero: a program may have such exceptions switched on.
template <int N>
void grow(Extent<N>& box, Vector<N + 1> const& image) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double const w = image[N];
    double bounds[2][N];
    box.packToPod(bounds);
    for (int i = 0; i < N; ++i) {
        if (w == 0 && !(std::fabs(image[i]) > 0)) continue;
        double const far = std::signbit(image[i]) == std::signbit(w) ? infinity : -infinity;
        double const c = w == 0 ? far : image[i] / w;
        // Both comparisons are false for NaN, so that it adds nothing.
        if (bounds[0][i] > c) bounds[0][i] = c;
        if (c > bounds[1][i]) bounds[1][i] = c;
    }
    box = Extent<N>{bounds};
}

/// The box of the corners in front of the eye, open towards the side on which those behind it come in again.
template <int N>
Extent<N> boxInFront(Extent<N> const& e, Matrix<N + 1> const& matrix) {
    constexpr double far = std::numeric_limits<double>::max();
    Extent<N> front;
    if (e.degenerate()) return front;
    // The eye looks along negative w, so that a corner is in front of it where its w is negative.
    Extent<N> back;
    for (unsigned int k = 0; k < 1U << N; ++k) {
        Vector<N + 1> const image = homogeneousImage(e.corner(k), matrix);
        grow(image[N] < 0.0 ? front : back, image);
    }
    if (front.degenerate()) return Extent<N>::nothing();
    // Also with corners on the plane of the eye whose images are 0/0 on some axis: the back box is empty there.
    if (back.degenerate()) return front;
    // The image of an edge from a corner in front to one behind runs to infinity, away from the image of the one behind.
    // The far point is 0 on the other axes, and the comparisons on those see the box that it has grown.
    for (int axis = 0; axis < N; ++axis) {
        if (front.hi(axis) > back.lo(axis)) front += onAxis<N>(axis, far);
        if (back.hi(axis) > front.lo(axis)) front += onAxis<N>(axis, -far);
    }
    return front;
}

}

PerspectiveTransform<1>::~PerspectiveTransform() = default;

template <int N>
constinit Matrix<N + 1> const PerspectiveTransform<N>::m_unitTrn = unitPerspective<N>();

template <int N>
PerspectiveTransform<N>::PerspectiveTransform() : matrix_{m_unitTrn} {}

template <int N>
PerspectiveTransform<N>::PerspectiveTransform(Matrix<N + 1> const& matrix) : matrix_{matrix} {}

template <int N>
PerspectiveTransform<N>::~PerspectiveTransform() = default;

template <int N>
PerspectiveTransform<N> PerspectiveTransform<N>::inverse() const {
    // All multiples of a homogeneous matrix map alike, so the inverse needs no scale.
    return PerspectiveTransform{matrix_.inverse()};
}

template <int N>
PerspectiveTransform<N>& PerspectiveTransform<N>::operator*=(AffineTransform<N> const& other) {
    multiply(other);
    return *this;
}

template <int N>
PerspectiveTransform<N>& PerspectiveTransform<N>::operator/=(AffineTransform<N> const& other) {
    divide(other);
    return *this;
}

template <int N>
PerspectiveTransform<N>* PerspectiveTransform<N>::clone() const {
    return new PerspectiveTransform{*this};
}

template <int N>
Transform<N>* PerspectiveTransform<N>::pInverse() const {
    return new PerspectiveTransform{inverse()};
}

template <int N>
Transform<N - 1>* PerspectiveTransform<N>::pSlice() const {
    if constexpr (N == 2) {
        return new PerspectiveTransform<1>;
    } else {
        // At z = 0 the row of z has no effect, and its column is what slicing drops.
        Matrix<4> const& h = matrix_;
        double const rows[3][3] = {
            {h[0][0], h[0][1], h[0][3]}, {h[1][0], h[1][1], h[1][3]}, {h[3][0], h[3][1], h[3][3]}};
        return new PerspectiveTransform<2>{Matrix<3>{rows}};
    }
}

template <int N>
Transform<N>* PerspectiveTransform<N>::composeWith(Transform<N> const& other) const {
    auto const* const affine = dynamic_cast<AffineTransform<N> const*>(&other);
    // Only what is affine keeps the class. Everything else becomes a compound, a second perspective, too.
    if (affine == nullptr) return Transform<N>::composeWith(other);
    auto result = std::make_unique<PerspectiveTransform>(*this);
    result->multiply(*affine);
    return result.release();
}

template <int N>
std::wostream& PerspectiveTransform<N>::putOn(std::wostream& os) const {
    return os << matrix_;
}

template <int N>
Extent<N> PerspectiveTransform<N>::preMultiply(Extent<N> const& e) const {
    return boxInFront(e, matrix_);
}

template <int N>
Point<N> PerspectiveTransform<N>::preMultiply(Point<N> const& p) const {
    return projected(homogeneousImage(p, matrix_));
}

template <int N>
Extent<N> PerspectiveTransform<N>::preDivide(Extent<N> const& e) const {
    return boxInFront(e, matrix_.inverse());
}

template <int N>
Point<N> PerspectiveTransform<N>::preDivide(Point<N> const& p) const {
    return projected(homogeneousImage(p, matrix_.inverse()));
}

template <int N>
Matrix<N + 1> PerspectiveTransform<N>::homogeneous() const {
    return matrix_;
}

// The other comes first: row vectors meet the left factor before the right one.
template <int N>
PerspectiveTransform<N>& PerspectiveTransform<N>::preMultiply(AffineTransform<N> const& other) {
    matrix_ = other.homogeneous() * matrix_;
    return *this;
}

template <int N>
PerspectiveTransform<N>& PerspectiveTransform<N>::multiply(AffineTransform<N> const& other) {
    matrix_ *= other.homogeneous();
    return *this;
}

// Multiplies, too: the interface promises that both operators do the same.
template <int N>
PerspectiveTransform<N>& PerspectiveTransform<N>::divide(AffineTransform<N> const& other) {
    matrix_ *= other.homogeneous();
    return *this;
}

template class ORN_API_DEFINED PerspectiveTransform<2>;
template class ORN_API_DEFINED PerspectiveTransform<3>;
