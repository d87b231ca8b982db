/// Similarity maps: rotations, mirrors, equal scaling, translations, and what is composed of them.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Line.h"
#include "orn/geometry/Plane.h"
#include "orn/transforms/AffineTransform.h"

ORN_INT_BOUNDS

/// The class says what the matrix is meant to be; nothing checks or enforces it. Degenerate input (a zero axis, parallel
/// frame vectors, a mirror whose direction is not of unit length) is not tested for and gives NaNs or no mirror.
template <int N>
class ORN_API_TEMPLATE UniformTransform : public AffineTransform<N> {
public:
    UniformTransform() = default;                                    ///< the identity
    UniformTransform(UniformTransform const&) = default;             ///< the matrix and the translation
    UniformTransform& operator=(UniformTransform const&) = default;  ///< the matrix and the translation
    ~UniformTransform() override;

    static UniformTransform translation(Vector<N> const& t);  ///< moves every point by t
    /// From the origin; negative: also a half turn, in space a point reflection.
    static UniformTransform scale(double s);
    static UniformTransform createFromPod(double const (&rows)[N + 1][N]);  ///< reads what packToPod fills

    static UniformTransform rotation(Angle const& angle);      ///< N = 2: anticlockwise about the origin
    static UniformTransform mirror(ORN::Line<2> const& line);  ///< N = 2: in a line, whose direction has length 1

    /// N = 3: right-handed about the axis, which may have any length from 1e-154 to 1e154: its square must not overflow or
    /// vanish.
    static UniformTransform rotation(Angle const& angle, Vector<3> const& axis);
    static UniformTransform mirror(Plane const& plane);  ///< N = 3: in a plane

    /// N = 3: right-handed orthonormal frames. The first axis named runs along a, the second lies in the plane of a and b
    /// on the side of b. The axes are the rows of the matrix. The squares of a, b and their cross product must not overflow
    /// or vanish.
    /// @{
    static UniformTransform xyAxes(Vector<3> const& a, Vector<3> const& b);
    static UniformTransform yzAxes(Vector<3> const& a, Vector<3> const& b);
    static UniformTransform zxAxes(Vector<3> const& a, Vector<3> const& b);
    /// @}

    using AffineTransform<N>::translation;
    double scale() const;                   ///< of a mirroring transform NaN in the plane, negative in space
    Angle rotation() const;                 ///< N = 2: where the x axis points; NaN for a scale of 0
    Angle rotation(Vector<3>& axis) const;  ///< N = 3: throws ORN::NotImplemented
    UniformTransform inverse() const;       ///< not finite for a scale of 0

    UniformTransform& operator*=(UniformTransform const& other);  ///< this, then the other
    UniformTransform& operator/=(UniformTransform const& other);  ///< this, then the inverse of the other

    [[nodiscard]] Transform<N>* clone() const override;
    [[nodiscard]] Transform<N>* pInverse() const override;
    [[nodiscard]] Transform<N>* composeWith(Transform<N> const& other) const override;
    [[nodiscard]] AffineTransform<N>* composeWith(AffineTransform<N> const& other) const override;

private:
    explicit UniformTransform(double const (*rows)[N]);
    explicit UniformTransform(Vector<N> const& translation);
    UniformTransform(Matrix<N> const& matrix, Vector<N> const& translation);

    static UniformTransform reflection(Point<N> const& fixed, Vector<N> const& normal);

    std::wostream& putOn(std::wostream& os) const override;
};

// What one dimension has and the other has not: with constraints in place of this, some versions of clang instantiate
// those members for both.
template <>
UniformTransform<3> UniformTransform<3>::rotation(Angle const& angle) = delete;
template <>
UniformTransform<3> UniformTransform<3>::mirror(ORN::Line<2> const& line) = delete;
template <>
Angle UniformTransform<3>::rotation() const = delete;
template <>
UniformTransform<2> UniformTransform<2>::rotation(Angle const& angle, Vector<3> const& axis) = delete;
template <>
UniformTransform<2> UniformTransform<2>::mirror(Plane const& plane) = delete;
template <>
UniformTransform<2> UniformTransform<2>::xyAxes(Vector<3> const& a, Vector<3> const& b) = delete;
template <>
UniformTransform<2> UniformTransform<2>::yzAxes(Vector<3> const& a, Vector<3> const& b) = delete;
template <>
UniformTransform<2> UniformTransform<2>::zxAxes(Vector<3> const& a, Vector<3> const& b) = delete;
template <>
Angle UniformTransform<2>::rotation(Vector<3>& axis) const = delete;

extern template class ORN_API_INSTANCE UniformTransform<2>;
extern template class ORN_API_INSTANCE UniformTransform<3>;

namespace ORN {

// For programs in which another library has such a name, too.
using ::UniformTransform;

}

ORN_INT_BOUNDS_END
