/// Every affine map that is not a similarity: unequal scaling, arbitrary axes.
#pragma once

#include "orn/Export.h"
#include "orn/transforms/AffineTransform.h"

ORN_INT_BOUNDS

/// Nothing is checked: parallel axes or a zero factor make a singular transform, whose inverse is not finite.
template <int N>
class ORN_API_TEMPLATE NonUniformTransform : public AffineTransform<N> {
public:
    NonUniformTransform() = default;                                       ///< the identity
    NonUniformTransform(NonUniformTransform const&) = default;             ///< the matrix and the translation
    NonUniformTransform& operator=(NonUniformTransform const&) = default;  ///< the matrix and the translation
    NonUniformTransform(AffineTransform<N> const& other);                  ///< the same map
    ~NonUniformTransform() override;

    /// From the origin, along the axes, as many as there are factors.
    /// @{
    static NonUniformTransform scale(double sx, double sy);
    static NonUniformTransform scale(double sx, double sy, double sz);
    /// @}

    /// The images of the unit vectors, taken as they are, one for each axis.
    /// @{
    static NonUniformTransform axes(Vector<2> const& x, Vector<2> const& y);
    static NonUniformTransform axes(Vector<3> const& x, Vector<3> const& y, Vector<3> const& z);
    /// @}

    static NonUniformTransform createFromPod(double const (&rows)[N + 1][N]);  ///< reads what packToPod fills

    NonUniformTransform inverse() const;  ///< not finite for a singular matrix

    NonUniformTransform& operator*=(AffineTransform<N> const& other);  ///< this, then the other
    NonUniformTransform& operator/=(AffineTransform<N> const& other);  ///< this, then the inverse of the other

    [[nodiscard]] Transform<N>* clone() const override;
    [[nodiscard]] Transform<N>* pInverse() const override;
    [[nodiscard]] Transform<N>* composeWith(Transform<N> const& other) const override;
    [[nodiscard]] AffineTransform<N>* composeWith(AffineTransform<N> const& other) const override;

private:
    explicit NonUniformTransform(double const (*rows)[N]);
    NonUniformTransform(Matrix<N> const& matrix, Vector<N> const& translation);
};

// What one dimension has and the other has not: with constraints in place of this, some versions of clang instantiate
// those members for both.
template <>
NonUniformTransform<3> NonUniformTransform<3>::scale(double sx, double sy) = delete;
template <>
NonUniformTransform<3> NonUniformTransform<3>::axes(Vector<2> const& x, Vector<2> const& y) = delete;
template <>
NonUniformTransform<2> NonUniformTransform<2>::scale(double sx, double sy, double sz) = delete;
template <>
NonUniformTransform<2> NonUniformTransform<2>::axes(Vector<3> const& x, Vector<3> const& y,
                                                    Vector<3> const& z) = delete;

extern template class ORN_API_INSTANCE NonUniformTransform<2>;
extern template class ORN_API_INSTANCE NonUniformTransform<3>;

namespace ORN {

// For programs in which another library has such a name, too.
using ::NonUniformTransform;

}

ORN_INT_BOUNDS_END
