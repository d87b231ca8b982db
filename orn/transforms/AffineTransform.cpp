#include "orn/transforms/AffineTransform.h"

#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/PerspectiveTransform.h"
#include "orn/transforms/SlicedTransformImp.h"
#include "orn/transforms/UniformTransform.h"

#include <memory>
#include <ostream>

namespace {

// Thrown as char *; the interface of dimension 1 spells it otherwise.
constinit char sliceNotImplementedText[] = "Not Implemented";

}

// The classes whose points the operators map in place; those of every other class are mapped by a call. Both ways give the
// same bits: the table is there for speed only.
constinit std::type_info const* const ORN::TransformApplication::m_affineKinds[2][2] = {
    {&typeid(UniformTransform<2>), &typeid(NonUniformTransform<2>)},
    {&typeid(UniformTransform<3>), &typeid(NonUniformTransform<3>)}};

template <int N>
AffineTransform<N>::AffineTransform(double const (*rows)[N]) : matrix_{rows} {}

template <int N>
AffineTransform<N>::AffineTransform(Vector<N> const& translation) : vector_{translation} {}

template <int N>
AffineTransform<N>::AffineTransform(Matrix<N> const& matrix, Vector<N> const& translation)
    : matrix_{matrix}, vector_{translation} {}

template <int N>
AffineTransform<N>::~AffineTransform() = default;

template <int N>
Matrix<N> const& AffineTransform<N>::getMatrix() const noexcept {
    return matrix_;
}

template <int N>
Vector<N> const& AffineTransform<N>::getVector() const noexcept {
    return vector_;
}

template <int N>
Transform<N - 1>* AffineTransform<N>::pSlice() const {
    if constexpr (N == 2) {
        throwText(sliceNotImplementedText);
    } else {
        // At z = 0 the row of z has no effect, and the column of z is what the slice leaves out.
        Matrix<3> const& m = matrix_;
        auto plane = std::make_unique<NonUniformTransform<2>>(
            NonUniformTransform<2>::axes({m[0][0], m[0][1]}, {m[1][0], m[1][1]}));
        *plane *= UniformTransform<2>::translation({vector_.x(), vector_.y()});
        return plane.release();
    }
}

template <int N>
Transform<N>* AffineTransform<N>::composeWith(Transform<N> const& other) const {
    // The most specific class first: what is affine is no perspective, and everything else becomes a compound.
    if (auto const* const affine = dynamic_cast<AffineTransform const*>(&other)) return composeWith(*affine);
    if (auto const* const perspective = dynamic_cast<PerspectiveTransform<N> const*>(&other)) {
        auto result = std::make_unique<PerspectiveTransform<N>>(*perspective);
        result->preMultiply(*this);
        return result.release();
    }
    return Transform<N>::composeWith(other);
}

template <int N>
void AffineTransform<N>::packToPod(double (&rows)[N + 1][N]) const {
    matrix_.packToPod(rows);
    vector_.packToPod(rows[N]);
}

template <int N>
Vector<N> AffineTransform<N>::translation() const {
    return vector_;
}

// Row vectors stand on the left, so the translation is the last row.
template <int N>
Matrix<N + 1> AffineTransform<N>::homogeneous() const {
    double rows[N + 1][N + 1] = {};
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) rows[i][j] = matrix_[i][j];
    vector_.packToPod(rows[N]);
    rows[N][N] = 1.0;
    return Matrix<N + 1>{rows};
}

// The sign of the determinant is the orientation of the images of the axes. A singular matrix has none and mirrors nothing.
template <int N>
bool AffineTransform<N>::mirroring() const {
    return matrix_.determinant() < 0.0;
}

template <int N>
std::wostream& AffineTransform<N>::putOn(std::wostream& os) const {
    return os << vector_ << L'+' << matrix_;
}

template <int N>
Point<N> AffineTransform<N>::preMultiply(Point<N> const& p) const {
    return Point<N>{p, matrix_, vector_};
}

// (p − t)·M⁻¹, and not p·M⁻¹ − t·M⁻¹: one rounding less, and the points near t keep their digits.
template <int N>
Point<N> AffineTransform<N>::preDivide(Point<N> const& p) const {
    return Point<N>{p + -vector_, matrix_.inverse()};
}

// A displacement is the difference of two points, which has no translation left in it.
template <int N>
Vector<N> AffineTransform<N>::preMultiply(Vector<N> const& v) const {
    return Vector<N>{v, matrix_};
}

template <int N>
Vector<N> AffineTransform<N>::preDivide(Vector<N> const& v) const {
    return Vector<N>{v, matrix_.inverse()};
}

// (p·M + t)·M' + t' is p·(M·M') + (t·M' + t'). The translation comes first, so that the other may be this transform.
template <int N>
AffineTransform<N>& AffineTransform<N>::multiply(AffineTransform const& other) {
    vector_ = Vector<N>{vector_, other.matrix_, other.vector_};
    matrix_ *= other.matrix_;
    return *this;
}

template <int N>
AffineTransform<N>& AffineTransform<N>::divide(AffineTransform const& other) {
    // The inverse is a copy: the other may be this transform.
    Matrix<N> const inverse = other.matrix_.inverse();
    vector_ = Vector<N>{vector_ - other.vector_, inverse};
    matrix_ *= inverse;
    return *this;
}

template class ORN_API_DEFINED AffineTransform<2>;
template class ORN_API_DEFINED AffineTransform<3>;
