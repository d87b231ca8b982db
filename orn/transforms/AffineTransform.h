/// Affine maps: a matrix and a translation. A point p goes to p·M + t, a vector v to v·M.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Matrix.h"
#include "orn/geometry/Vector.h"
#include "orn/transforms/Transform.h"

#include <atomic>
#include <iosfwd>
#include <typeinfo>

ORN_INT_BOUNDS

/// Row i of the matrix is the image of the i-th unit vector, the translation that of the origin. Nothing tests for a
/// singular matrix. The two kinds that exist are UniformTransform and NonUniformTransform.
template <int N>
class ORN_API_TEMPLATE AffineTransform : public Transform<N> {
public:
    AffineTransform(AffineTransform const&) = default;             ///< the matrix and the translation
    AffineTransform& operator=(AffineTransform const&) = default;  ///< the matrix and the translation
    ~AffineTransform() override;

    /// N = 3: the part in the x-y plane, a NonUniformTransform<2>. N = 2: throws the char * "Not Implemented".
    [[nodiscard]] Transform<N - 1>* pSlice() const override;

    // Before composeWith: in Microsoft's ABI the first declaration of a name, an override too, places all its overloads.
    virtual void packToPod(double (&rows)[N + 1][N]) const;  ///< the rows of the matrix, then the translation

    /// With an affine transform the most specific affine kind, with a perspective a perspective, else a compound.
    [[nodiscard]] Transform<N>* composeWith(Transform<N> const& other) const override = 0;
    /// This, then the other; to own and delete.
    [[nodiscard]] virtual AffineTransform* composeWith(AffineTransform const& other) const = 0;
    virtual Vector<N> translation() const;      ///< the image of the origin
    virtual Matrix<N + 1> homogeneous() const;  ///< (p, 1) times it is (p·M + t, 1)
    virtual bool mirroring() const;             ///< the determinant is negative

    /// Vectors are not translated; / is the way back.
    /// @{
    friend Vector<N> operator*(Vector<N> const& v, AffineTransform const& t) {
        return ORN::TransformApplication::map(v, t);
    }
    friend Vector<N> operator/(Vector<N> const& v, AffineTransform const& t) { return t.preDivide(v); }
    friend Vector<N>& operator*=(Vector<N>& v, AffineTransform const& t) {
        return v = ORN::TransformApplication::map(v, t);
    }
    friend Vector<N>& operator/=(Vector<N>& v, AffineTransform const& t) { return v = t.preDivide(v); }
    /// @}

protected:
    AffineTransform() = default;  ///< the identity
    /// Of a matrix (by its rows) and a translation; the one that is not given is the identity.
    /// @{
    explicit AffineTransform(double const (*rows)[N]);
    explicit AffineTransform(Vector<N> const& translation);
    AffineTransform(Matrix<N> const& matrix, Vector<N> const& translation);
    /// @}

    /// What p·M + t is computed from.
    /// @{
    Matrix<N> const& getMatrix() const noexcept;
    Vector<N> const& getVector() const noexcept;
    /// @}

    std::wostream& putOn(std::wostream& os) const override;  ///< (translation)+[matrix]

    using Transform<N>::preMultiply;
    using Transform<N>::preDivide;

    /// Forwards p·M + t and v·M, and back.
    /// @{
    Point<N> preMultiply(Point<N> const& p) const override;
    Point<N> preDivide(Point<N> const& p) const override;
    virtual Vector<N> preMultiply(Vector<N> const& v) const;
    virtual Vector<N> preDivide(Vector<N> const& v) const;
    /// @}

    virtual AffineTransform& multiply(AffineTransform const& other);  ///< this, then the other
    virtual AffineTransform& divide(AffineTransform const& other);    ///< this, then the inverse of the other

private:
    friend struct ORN::TransformApplication;

    Matrix<N> matrix_;
    Vector<N> vector_;
};

extern template class ORN_API_INSTANCE AffineTransform<2>;
extern template class ORN_API_INSTANCE AffineTransform<3>;

/// @cond
namespace ORN {

// Compares addresses. A class whose type information lies elsewhere has its own function called, which gives the same.
template <int N>
bool TransformApplication::mapsByMatrix(Transform<N> const& t) noexcept {
    std::type_info const* const kind = &typeid(t);
    auto const& kinds = m_affineKinds[N - 2];
    return (kind == kinds[0]) | (kind == kinds[1]);  // one branch, which a loop can be freed of
}

template <int N>
Point<N> TransformApplication::map(Point<N> const& p, Transform<N> const& t) {
    if (!mapsByMatrix(t)) [[unlikely]]
        return call(p, t);
    auto const& affine = static_cast<AffineTransform<N> const&>(t);
    Matrix<N> const& m = affine.matrix_;
    Vector<N> const& v = affine.vector_;
    if constexpr (N == 2) {
        return {m.product(p, 0) + v.x(), m.product(p, 1) + v.y()};
    } else {
        return {m.product(p, 0) + v.x(), m.product(p, 1) + v.y(), m.product(p, 2) + v.z()};
    }
}

template <int N>
Vector<N> TransformApplication::map(Vector<N> const& v, AffineTransform<N> const& t) {
    return mapsByMatrix<N>(t) ? Vector<N>{v, t.matrix_} : t.preMultiply(v);
}

// A point of the plane is returned in two registers. Copied whole it would be stored by halves and loaded in one piece,
// which waits until both stores are done: a quarter of the time of p / t. The fence is no instruction; it keeps the
// compiler from joining the halves.
template <int N>
Point<N> TransformApplication::unmap(Point<N> const& p, Transform<N> const& t) {
    Point<N> const& returned = t.preDivide(p);
    if constexpr (N == 2) {
        double const x = returned.x();
        std::atomic_signal_fence(std::memory_order_acq_rel);
        return {x, returned.y()};
    } else {
        return returned;
    }
}

}
/// @endcond

namespace ORN {

// For programs in which another library has such a name, too.
using ::AffineTransform;

}

ORN_INT_BOUNDS_END
