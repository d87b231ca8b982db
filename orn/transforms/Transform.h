/// The interface of the coordinate transforms, and how they are applied.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Point.h"

#include <iosfwd>
#include <typeinfo>

template <int N>
class ORN_API_TEMPLATE Transform;
template <int N>
class AffineTransform;

/// @cond
namespace ORN {

// How the operators apply transforms. Points and vectors go forwards through the library's affine kinds in place: a call
// through the table costs several times the product. All others, and what an application derives from these, are called.
struct TransformApplication {
    template <int N>
    static Point<N> map(Point<N> const& p, Transform<N> const& t);
    template <int N>
    static Vector<N> map(Vector<N> const& v, AffineTransform<N> const& t);
    template <int N>
    static Point<N> unmap(Point<N> const& p, Transform<N> const& t);

private:
    template <int N>
    static bool mapsByMatrix(Transform<N> const& t) noexcept;

    // Of the plane, then of space: where the type information of UniformTransform and of NonUniformTransform lies.
    ORN_API static std::type_info const* const m_affineKinds[2][2];

    ORN_API static Point<2> call(Point<2> const& p, Transform<2> const& t);
    ORN_API static Point<3> call(Point<3> const& p, Transform<3> const& t);
};

}
/// @endcond

/// The transform of a line, which slicing a transform of the plane gives. It has no operations, and its owner deletes it.
template <>
class ORN_API Transform<1> {
public:
    virtual ~Transform();

protected:
    Transform() = default;                             ///< only as a base
    Transform(Transform const&) = default;             ///< as the derived class copies
    Transform& operator=(Transform const&) = default;  ///< as the derived class copies
};

/// A map of the plane (N = 2) or of space (N = 3). The caller owns what clone, composeWith and the functions whose names begin
/// with p return, and deletes it. Any thread may use a transform that no thread is changing.
template <int N>
class ORN_API_TEMPLATE Transform {
    static_assert(N == 2 || N == 3, "transforms map the plane or space");

public:
    virtual ~Transform();

    [[nodiscard]] virtual Transform* clone() const = 0;  ///< a copy, to own and delete
    [[nodiscard]] virtual Transform* pInverse()
        const = 0;  ///< the way back, to own and delete; not finite where there is none

    /// The transform one dimension lower: embeds at a last coordinate of 0, maps, and drops the last coordinate.
    [[nodiscard]] virtual Transform<N - 1>* pSlice() const;

    /// This transform, then the other.
    [[nodiscard]] virtual Transform* composeWith(Transform const& other) const;

    /// Forwards. An extent becomes the box of its mapped corners (a perspective looks at the eye too).
    /// @{
    friend Point<N> operator*(Point<N> const& p, Transform const& t) { return ORN::TransformApplication::map(p, t); }
    friend Extent<N> operator*(Extent<N> const& e, Transform const& t) { return t.preMultiply(e); }
    friend Point<N>& operator*=(Point<N>& p, Transform const& t) { return p = ORN::TransformApplication::map(p, t); }
    friend Extent<N>& operator*=(Extent<N>& e, Transform const& t) { return e = t.preMultiply(e); }
    /// @}

    /// Backwards. A singular transform yields infinities and NaNs, never an exception.
    /// @{
    friend Point<N> operator/(Point<N> const& p, Transform const& t) { return ORN::TransformApplication::unmap(p, t); }
    friend Extent<N> operator/(Extent<N> const& e, Transform const& t) { return t.preDivide(e); }
    friend Point<N>& operator/=(Point<N>& p, Transform const& t) { return p = t.preDivide(p); }
    friend Extent<N>& operator/=(Extent<N>& e, Transform const& t) { return e = t.preDivide(e); }
    /// @}

    /// For diagnosis, in a form that differs by kind.
    friend std::wostream& operator<<(std::wostream& os, Transform const& t) { return t.putOn(os); }

protected:
    Transform() = default;                             ///< only as a base
    Transform(Transform const&) = default;             ///< as the derived class copies
    Transform& operator=(Transform const&) = default;  ///< as the derived class copies

    virtual std::wostream& putOn(std::wostream& os) const = 0;  ///< writes the transform
    // The order of the virtual functions is fixed. Microsoft's ABI puts overloads side by side, last declared first: the
    // extent's slot comes before the point's.
    virtual Point<N> preMultiply(Point<N> const& p) const = 0;  ///< forwards
    virtual Extent<N> preMultiply(Extent<N> const& e) const;    ///< forwards: the box of the mapped corners
    virtual Point<N> preDivide(Point<N> const& p) const = 0;    ///< backwards
    virtual Extent<N> preDivide(Extent<N> const& e) const;      ///< backwards: the box of the mapped corners

private:
    friend struct ORN::TransformApplication;
};

extern template class ORN_API_INSTANCE Transform<2>;
extern template class ORN_API_INSTANCE Transform<3>;

// Here, and not above: it needs the class. It holds the definitions of TransformApplication.
#include "orn/transforms/AffineTransform.h"

namespace ORN {

// For programs in which another library has such a name, too.
using ::Transform;

}
