/// Similarity maps: rotations, mirrors, equal scaling, translations, and what is composed of them.
#pragma once

#include "orn/geometry/Line.h"
#include "orn/geometry/Plane.h"
#include "orn/transforms/AffineTransform.h"

/// The class says what the matrix is meant to be; nothing checks or enforces it. Degenerate input (a zero axis, parallel
/// frame vectors, a mirror whose direction is not of unit length) is not tested for and gives NaNs or no mirror.
template <int N>
class ORN_API UniformTransform : public AffineTransform<N> {
public:
    UniformTransform() = default;                                    ///< the identity
    UniformTransform(UniformTransform const&) = default;             ///< the matrix and the translation
    UniformTransform& operator=(UniformTransform const&) = default;  ///< the matrix and the translation
    ~UniformTransform() override;

    static UniformTransform translation(Vector<N> const& t);  ///< moves every point by t
    /// From the origin; negative: also a half turn, in space a point reflection.
    static UniformTransform scale(double s);
    static UniformTransform createFromPod(double const (&rows)[N + 1][N]);  ///< reads what packToPod fills

    /// Anticlockwise about the origin.
    static UniformTransform rotation(Angle const& angle) requires(N == 2);
    /// In a line, whose direction has length 1.
    static UniformTransform mirror(ORN::Line<2> const& line) requires(N == 2);

    /// Right-handed about the axis, which may have any length.
    static UniformTransform rotation(Angle const& angle, Vector<3> const& axis) requires(N == 3);
    static UniformTransform mirror(Plane const& plane) requires(N == 3);  ///< in a plane

    /// Right-handed orthonormal frames: the first axis named runs along a, the second lies in the plane of a and b on the
    /// side of b. The axes are the rows of the matrix.
    /// @{
    static UniformTransform xyAxes(Vector<3> const& a, Vector<3> const& b) requires(N == 3);
    static UniformTransform yzAxes(Vector<3> const& a, Vector<3> const& b) requires(N == 3);
    static UniformTransform zxAxes(Vector<3> const& a, Vector<3> const& b) requires(N == 3);
    /// @}

    using AffineTransform<N>::translation;
    double scale() const;                     ///< of a mirroring transform NaN in the plane, negative in space
    Angle rotation() const requires(N == 2);  ///< where the x axis points; NaN for a scale of 0
    Angle rotation(Vector<3>& axis) const requires(N == 3);  ///< throws ORN::NotImplemented
    UniformTransform inverse() const;                        ///< not finite for a scale of 0

    UniformTransform& operator*=(UniformTransform const& other);  ///< this, then the other
    UniformTransform& operator/=(UniformTransform const& other);  ///< this, then the inverse of the other

    Transform<N>* clone() const override;
    Transform<N>* pInverse() const override;
    Transform<N>* composeWith(Transform<N> const& other) const override;
    AffineTransform<N>* composeWith(AffineTransform<N> const& other) const override;

private:
    explicit UniformTransform(double const (*rows)[N]);
    explicit UniformTransform(Vector<N> const& translation);
    UniformTransform(Matrix<N> const& matrix, Vector<N> const& translation);

    static UniformTransform reflection(Point<N> const& fixed, Vector<N> const& normal);

    std::wostream& putOn(std::wostream& os) const override;
};

extern template class UniformTransform<2>;
extern template class UniformTransform<3>;
