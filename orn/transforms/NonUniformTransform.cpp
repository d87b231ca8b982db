#include "orn/transforms/NonUniformTransform.h"

#include <memory>

template <int N>
NonUniformTransform<N>::NonUniformTransform(double const (*rows)[N]) : AffineTransform<N>{rows} {}

template <int N>
NonUniformTransform<N>::NonUniformTransform(Matrix<N> const& matrix, Vector<N> const& translation)
    : AffineTransform<N>{matrix, translation} {}

template <int N>
NonUniformTransform<N>::NonUniformTransform(AffineTransform<N> const& other) : AffineTransform<N>{other} {}

template <int N>
NonUniformTransform<N>::~NonUniformTransform() = default;

template <int N>
NonUniformTransform<N> NonUniformTransform<N>::scale(double sx, double sy) {
    double const rows[2][2] = {{sx, 0.0}, {0.0, sy}};
    return NonUniformTransform{rows};
}

template <int N>
NonUniformTransform<N> NonUniformTransform<N>::scale(double sx, double sy, double sz) {
    double const rows[3][3] = {{sx, 0.0, 0.0}, {0.0, sy, 0.0}, {0.0, 0.0, sz}};
    return NonUniformTransform{rows};
}

// Row vectors stand on the left of the matrix, so its rows are the images of the axes.
template <int N>
NonUniformTransform<N> NonUniformTransform<N>::axes(Vector<2> const& x, Vector<2> const& y) {
    double rows[2][2];
    x.packToPod(rows[0]);
    y.packToPod(rows[1]);
    return NonUniformTransform{rows};
}

template <int N>
NonUniformTransform<N> NonUniformTransform<N>::axes(Vector<3> const& x, Vector<3> const& y, Vector<3> const& z) {
    double rows[3][3];
    x.packToPod(rows[0]);
    y.packToPod(rows[1]);
    z.packToPod(rows[2]);
    return NonUniformTransform{rows};
}

template <int N>
NonUniformTransform<N> NonUniformTransform<N>::createFromPod(double const (&rows)[N + 1][N]) {
    return NonUniformTransform{Matrix<N>{rows}, Vector<N>{rows[N]}};
}

template <int N>
NonUniformTransform<N> NonUniformTransform<N>::inverse() const {
    // p = q·M + t gives q = p·M⁻¹ − t·M⁻¹.
    Matrix<N> const inverse = this->getMatrix().inverse();
    return NonUniformTransform{inverse, Vector<N>{-this->getVector(), inverse}};
}

// The other may be this object: multiply and divide take what they need of it before they write.
template <int N>
NonUniformTransform<N>& NonUniformTransform<N>::operator*=(AffineTransform<N> const& other) {
    this->multiply(other);
    return *this;
}

template <int N>
NonUniformTransform<N>& NonUniformTransform<N>::operator/=(AffineTransform<N> const& other) {
    this->divide(other);
    return *this;
}

template <int N>
Transform<N>* NonUniformTransform<N>::clone() const {
    return new NonUniformTransform{*this};
}
template <int N>
Transform<N>* NonUniformTransform<N>::pInverse() const {
    return new NonUniformTransform{inverse()};
}

template <int N>
Transform<N>* NonUniformTransform<N>::composeWith(Transform<N> const& other) const {
    return AffineTransform<N>::composeWith(other);
}

// The product of affine transforms is affine. That it might be a similarity is not looked for: rounding would decide it.
template <int N>
AffineTransform<N>* NonUniformTransform<N>::composeWith(AffineTransform<N> const& other) const {
    auto result = std::make_unique<NonUniformTransform>(*this);
    *result *= other;
    return result.release();
}

template class ORN_API_DEFINED NonUniformTransform<2>;
template class ORN_API_DEFINED NonUniformTransform<3>;
