/// Perspective maps: a homogeneous matrix, and a division by the last homogeneous coordinate.
#pragma once

#include "orn/geometry/Matrix.h"
#include "orn/transforms/AffineTransform.h"
#include "orn/transforms/Transform.h"

template <int N>
class PerspectiveTransform;

/// What slicing a planar perspective gives.
template <>
class ORN_API PerspectiveTransform<1> : public Transform<1> {
public:
    /// It has no data.
    /// @{
    PerspectiveTransform() = default;
    PerspectiveTransform(PerspectiveTransform const&) = default;
    PerspectiveTransform& operator=(PerspectiveTransform const&) = default;
    /// @}

    ~PerspectiveTransform() override;
};

/// (p, 1)·H is (X, w), and p goes to X/w. Points with w < 0 are in front of the eye; one on the plane of the eye (w = 0)
/// goes to infinities or NaNs. An extent becomes the box of its corners in front of the eye, empty if there are none, and
/// reaches to ±DBL_MAX where corners lie on both sides of the plane of the eye. Keep extents from ending on that plane:
/// a corner there counts as one behind the eye, with the image that dividing by zero gives. The sign of the zero may take
/// that image to the wrong side, and 0/0 has none, so that the box may stay closed where it should be open. Other
/// perspectives than the unit one come of composing it with affine transforms, before or behind, and of inverting.
template <int N>
class ORN_API_TEMPLATE PerspectiveTransform : public Transform<N> {
public:
    /// (x, y) to (x/y, −1/y); (x, y, z) to (x/z, y/z, −1/z).
    static Matrix<N + 1> const m_unitTrn;

    PerspectiveTransform();                                                  ///< m_unitTrn
    PerspectiveTransform(PerspectiveTransform const&) = default;             ///< the matrix
    PerspectiveTransform& operator=(PerspectiveTransform const&) = default;  ///< the matrix
    ~PerspectiveTransform() override;

    PerspectiveTransform inverse() const;  ///< not finite for a singular matrix

    /// This, then the other. Both operators do the same: dividing multiplies with the transform, not with its inverse.
    /// @{
    PerspectiveTransform& operator*=(AffineTransform<N> const& other);
    PerspectiveTransform& operator/=(AffineTransform<N> const& other);
    /// @}

    [[nodiscard]] PerspectiveTransform* clone() const override;
    [[nodiscard]] Transform<N>* pInverse() const override;

    /// N = 3: the perspective without the row and the column of z. N = 2: an empty PerspectiveTransform<1>.
    [[nodiscard]] Transform<N - 1>* pSlice() const override;

    /// With an affine transform a perspective, else (also with a perspective) a compound.
    [[nodiscard]] Transform<N>* composeWith(Transform<N> const& other) const override;

    virtual Matrix<N + 1> homogeneous() const;  ///< H

private:
    template <int>
    friend class AffineTransform;
    template <int>
    friend class PerspectiveTransform;

    explicit PerspectiveTransform(Matrix<N + 1> const& matrix);

    std::wostream& putOn(std::wostream& os) const override;
    Extent<N> preMultiply(Extent<N> const& e) const override;
    Point<N> preMultiply(Point<N> const& p) const override;
    Extent<N> preDivide(Extent<N> const& e) const override;
    Point<N> preDivide(Point<N> const& p) const override;

    virtual PerspectiveTransform& preMultiply(AffineTransform<N> const& other);  // the other, then this
    virtual PerspectiveTransform& multiply(AffineTransform<N> const& other);     // this, then the other
    virtual PerspectiveTransform& divide(AffineTransform<N> const& other);       // as multiply

    Matrix<N + 1> matrix_;
};

extern template class ORN_API_INSTANCE PerspectiveTransform<2>;
extern template class ORN_API_INSTANCE PerspectiveTransform<3>;

namespace ORN {

// For programs in which another library has such a name, too.
using ::PerspectiveTransform;

}
