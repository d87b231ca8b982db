#include "orn/transforms/UniformTransform.h"

#include "orn/foundation/Error.h"
#include "orn/geometry/Elementary.h"
#include "orn/transforms/NonUniformTransform.h"

#include <cmath>
#include <memory>
#include <ostream>

namespace {

// Row vectors stand on the left of the matrix, so its rows are the images of the three axes.
Matrix<3> withRows(Vector<3> const& x, Vector<3> const& y, Vector<3> const& z) {
    double rows[3][3];
    x.packToPod(rows[0]);
    y.packToPod(rows[1]);
    z.packToPod(rows[2]);
    return Matrix<3>{rows};
}

/// The right-handed frame with its first axis along a and its second towards b. Vectors that are zero or parallel span no
/// plane: their frame is NaN.
struct Frame {
    Frame(Vector<3> const& a, Vector<3> const& b)
        : first{a.unit()}, third{cross(first, b).unit()}, second{cross(third, first)} {}

    Vector<3> first, third, second;
};

}

template <int N>
UniformTransform<N>::UniformTransform(double const (*rows)[N]) : AffineTransform<N>{rows} {}

template <int N>
UniformTransform<N>::UniformTransform(Matrix<N> const& matrix, Vector<N> const& translation)
    : AffineTransform<N>{matrix, translation} {}

template <int N>
UniformTransform<N>::UniformTransform(Vector<N> const& translation) : AffineTransform<N>{translation} {}

template <int N>
UniformTransform<N>::~UniformTransform() = default;

template <int N>
UniformTransform<N> UniformTransform<N>::translation(Vector<N> const& t) {
    return UniformTransform{t};
}

template <int N>
UniformTransform<N> UniformTransform<N>::scale(double s) {
    double rows[N][N] = {};
    for (int i = 0; i < N; ++i) rows[i][i] = s;
    return UniformTransform{rows};
}

template <int N>
UniformTransform<N> UniformTransform<N>::createFromPod(double const (&rows)[N + 1][N]) {
    return UniformTransform{Matrix<N>{rows}, Vector<N>{rows[N]}};
}

template <int N>
UniformTransform<N> UniformTransform<N>::rotation(Angle const& angle) {
    double const c = angle.cos();
    double const s = angle.sin();
    // The images of the axes: x goes to (cos, sin), and y a quarter turn further.
    double const rows[2][2] = {{c, s}, {-s, c}};
    return UniformTransform{rows};
}

// Rodrigues' formula, cos·I + (1 − cos)·uᵀu + sin·[u], written for row vectors. On the diagonal it is (1 − x²)·cos + x².
template <int N>
UniformTransform<N> UniformTransform<N>::rotation(Angle const& angle, Vector<3> const& axis) {
    Vector<3> const u = axis.unit();
    double const x = u.x();
    double const y = u.y();
    double const z = u.z();
    double const c = angle.cos();
    double const s = angle.sin();
    double const k = 1.0 - c;
    double const rows[3][3] = {{(1.0 - x * x) * c + x * x, z * s + x * y * k, x * z * k - y * s},
                               {x * y * k - z * s, (1.0 - y * y) * c + y * y, x * s + y * z * k},
                               {y * s + x * z * k, y * z * k - x * s, (1.0 - z * z) * c + z * z}};
    return UniformTransform{rows};
}

// Householder's reflection I − 2·n·nᵀ, moved so that the given point stays where it is. n is taken as it is: one that is
// not of unit length gives no mirror.
template <int N>
UniformTransform<N> UniformTransform<N>::reflection(Point<N> const& fixed, Vector<N> const& normal) {
    double rows[N][N];
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) rows[i][j] = (i == j ? 1.0 : 0.0) - 2.0 * normal[i] * normal[j];
    Matrix<N> const matrix{rows};
    // With the translation t = f − f·M the fixed point f goes to f·M + t = f.
    return UniformTransform{matrix, fixed - Point<N>{fixed, matrix}};
}

template <int N>
UniformTransform<N> UniformTransform<N>::mirror(ORN::Line<2> const& line) {
    return reflection(line.point(), line.direction().perpendicular());
}

template <int N>
UniformTransform<N> UniformTransform<N>::mirror(Plane const& plane) {
    return reflection(plane.pointOnPlane(), plane.normal());
}

template <int N>
UniformTransform<N> UniformTransform<N>::xyAxes(Vector<3> const& a, Vector<3> const& b) {
    Frame const frame{a, b};
    return UniformTransform{withRows(frame.first, frame.second, frame.third), {}};
}

// A cyclic exchange of the axes, here and in zxAxes, keeps the frame right-handed.
template <int N>
UniformTransform<N> UniformTransform<N>::yzAxes(Vector<3> const& a, Vector<3> const& b) {
    Frame const frame{a, b};
    return UniformTransform{withRows(frame.third, frame.first, frame.second), {}};
}

template <int N>
UniformTransform<N> UniformTransform<N>::zxAxes(Vector<3> const& a, Vector<3> const& b) {
    Frame const frame{a, b};
    return UniformTransform{withRows(frame.second, frame.third, frame.first), {}};
}

template <int N>
double UniformTransform<N>::scale() const {
    // A similarity of scale s has the determinant s² in the plane and s³ in space.
    double const determinant = this->getMatrix().determinant();
    if constexpr (N == 2) {
        return std::sqrt(determinant);
    } else {
        return ORN::cubeRoot(determinant + 0.0);  // a scale of zero has no sign
    }
}

template <int N>
Angle UniformTransform<N>::rotation() const {
    // The image of the x axis is s·(cos, sin); cosSin divides the scale out. A scale of 0 leaves no direction.
    return Angle::cosSin(this->getMatrix()[0][0], this->getMatrix()[0][1]);
}

template <int N>
Angle UniformTransform<N>::rotation(Vector<3>&) const {
    throw ORN::NotImplemented{L"UniformTransform<3>::rotation"};
}

template <int N>
UniformTransform<N> UniformTransform<N>::inverse() const {
    // p = q·M + t gives q = p·M⁻¹ − t·M⁻¹.
    Matrix<N> const inverse = this->getMatrix().inverse();
    return UniformTransform{inverse, Vector<N>{-this->getVector(), inverse}};
}

// A similarity times a similarity is one, which is why only those may be multiplied in place.
template <int N>
UniformTransform<N>& UniformTransform<N>::operator*=(UniformTransform const& other) {
    this->multiply(other);
    return *this;
}

template <int N>
UniformTransform<N>& UniformTransform<N>::operator/=(UniformTransform const& other) {
    this->divide(other);
    return *this;
}

template <int N>
Transform<N>* UniformTransform<N>::clone() const {
    return new UniformTransform{*this};
}
template <int N>
Transform<N>* UniformTransform<N>::pInverse() const {
    return new UniformTransform{inverse()};
}

template <int N>
Transform<N>* UniformTransform<N>::composeWith(Transform<N> const& other) const {
    return AffineTransform<N>::composeWith(other);
}

template <int N>
AffineTransform<N>* UniformTransform<N>::composeWith(AffineTransform<N> const& other) const {
    // Only two similarities make one for certain.
    if (auto const* const uniform = dynamic_cast<UniformTransform const*>(&other)) {
        auto result = std::make_unique<UniformTransform>(*this);
        *result *= *uniform;
        return result.release();
    }
    auto result = std::make_unique<NonUniformTransform<N>>(*this);
    *result *= other;
    return result.release();
}

template <int N>
std::wostream& UniformTransform<N>::putOn(std::wostream& os) const {
    if constexpr (N == 2) {
        return os << this->translation() << L'*' << scale() << L'~' << rotation();
    } else {
        return os << L"UniformTfm[" << this->getMatrix() << L" + " << this->getVector() << L']';
    }
}

template class ORN_API_DEFINED UniformTransform<2>;
template class ORN_API_DEFINED UniformTransform<3>;
