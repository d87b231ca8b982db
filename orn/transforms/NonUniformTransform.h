/// Every affine map that is not a similarity: unequal scaling, arbitrary axes.
#pragma once

#include "orn/transforms/AffineTransform.h"

/// Nothing is checked: parallel axes or a zero factor make a singular transform, whose inverse is not finite.
template <int N>
class ORN_API NonUniformTransform : public AffineTransform<N> {
public:
    NonUniformTransform() = default;                                       ///< the identity
    NonUniformTransform(NonUniformTransform const&) = default;             ///< the matrix and the translation
    NonUniformTransform& operator=(NonUniformTransform const&) = default;  ///< the matrix and the translation
    NonUniformTransform(AffineTransform<N> const& other);                  ///< the same map
    ~NonUniformTransform() override;

    /// From the origin, along the axes.
    /// @{
    static NonUniformTransform scale(double sx, double sy) requires(N == 2);
    static NonUniformTransform scale(double sx, double sy, double sz) requires(N == 3);
    /// @}

    /// The images of the unit vectors, taken as they are.
    /// @{
    static NonUniformTransform axes(Vector<2> const& x, Vector<2> const& y) requires(N == 2);
    static NonUniformTransform axes(Vector<3> const& x, Vector<3> const& y, Vector<3> const& z) requires(N == 3);
    /// @}

    static NonUniformTransform createFromPod(double const (&rows)[N + 1][N]);  ///< reads what packToPod fills

    NonUniformTransform inverse() const;  ///< not finite for a singular matrix

    NonUniformTransform& operator*=(AffineTransform<N> const& other);  ///< this, then the other
    NonUniformTransform& operator/=(AffineTransform<N> const& other);  ///< this, then the inverse of the other

    Transform<N>* clone() const override;
    Transform<N>* pInverse() const override;
    Transform<N>* composeWith(Transform<N> const& other) const override;
    AffineTransform<N>* composeWith(AffineTransform<N> const& other) const override;

private:
    explicit NonUniformTransform(double const (*rows)[N]);
    NonUniformTransform(Matrix<N> const& matrix, Vector<N> const& translation);
};

extern template class NonUniformTransform<2>;
extern template class NonUniformTransform<3>;
