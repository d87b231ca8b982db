// A transform one dimension up, seen in the hyperplane where the last coordinate is 0: what slicing gives.
#pragma once

#include "orn/transforms/Transform.h"

#include <memory>
#include <ostream>
#include <utility>

/// Lifts an extent to a last coordinate of 0, maps it, and drops the last axis. What is empty gives the empty extent.
template <int N, typename Map>
Extent<N> extentThrough(Extent<N> const& e, Map map) {
    if (e.degenerate()) return Extent<N>::nothing();
    double bounds[2][N];
    e.packToPod(bounds);
    double lifted[2][N + 1] = {};
    for (int i = 0; i < N; ++i) {
        lifted[0][i] = bounds[0][i];
        lifted[1][i] = bounds[1][i];
    }
    Extent<N + 1> const mapped = map(Extent<N + 1>{lifted});
    if (mapped.degenerate()) return Extent<N>::nothing();
    for (int i = 0; i < N; ++i) {
        bounds[0][i] = mapped.lo(i);
        bounds[1][i] = mapped.hi(i);
    }
    return Extent<N>{bounds};
}

template <int N>
class SlicedTransform;

template <>
class SlicedTransform<2> final : public Transform<2> {
public:
    using Owned = std::unique_ptr<Transform<3>>;

    explicit SlicedTransform(Owned full) noexcept : full_{std::move(full)} {}

    Transform<3> const& full() const noexcept { return *full_; }

    Transform<2>* clone() const override {
        Owned full{full_->clone()};
        return new SlicedTransform{std::move(full)};
    }
    Transform<2>* pInverse() const override {
        Owned full{full_->pInverse()};
        return new SlicedTransform{std::move(full)};
    }

protected:
    std::wostream& putOn(std::wostream& os) const override { return os << *full_; }

    Extent<2> preMultiply(Extent<2> const& e) const override {
        return extentThrough(e, [this](Extent<3> const& lifted) { return lifted * *full_; });
    }
    Point<2> preMultiply(Point<2> const& p) const override {
        Point<3> const mapped = Point<3>{p.x(), p.y(), 0.0} * *full_;
        return Point<2>{mapped.x(), mapped.y()};
    }
    Extent<2> preDivide(Extent<2> const& e) const override {
        return extentThrough(e, [this](Extent<3> const& lifted) { return lifted / *full_; });
    }
    Point<2> preDivide(Point<2> const& p) const override {
        Point<3> const mapped = Point<3>{p.x(), p.y(), 0.0} / *full_;
        return Point<2>{mapped.x(), mapped.y()};
    }

private:
    Owned full_;
};

/// What an operation throws that reports by a bare text instead of an exception object.
inline constinit char notImplementedText[] = "Not implemented";

/// Throws a char *, so that handlers for char *, char const * and void * all receive it.
// NOLINTNEXTLINE(misc-throw-by-value-catch-by-reference)
[[noreturn]] inline void throwText(char* text) { throw text; }

/// The interface of dimension 1 has nothing but a destructor, so the operations begin here.
template <>
class SlicedTransform<1> final : public Transform<1> {
public:
    using Owned = std::unique_ptr<Transform<2>>;

    explicit SlicedTransform(Owned full) noexcept : full_{std::move(full)} {}

    virtual Transform<1>* clone() const {
        Owned full{full_->clone()};
        return new SlicedTransform{std::move(full)};
    }
    virtual Transform<1>* pInverse() const {
        Owned full{full_->pInverse()};
        return new SlicedTransform{std::move(full)};
    }

    virtual std::wostream& putOn(std::wostream& os) const { return os << *full_; }

    // Points first, as in Transform<2>.
    virtual Point<1> preMultiply(Point<1> const&) const { throwText(notImplementedText); }
    virtual Extent<1> preMultiply(Extent<1> const& e) const {
        return extentThrough(e, [this](Extent<2> const& lifted) { return lifted * *full_; });
    }
    virtual Point<1> preDivide(Point<1> const&) const { throwText(notImplementedText); }
    virtual Extent<1> preDivide(Extent<1> const& e) const {
        return extentThrough(e, [this](Extent<2> const& lifted) { return lifted / *full_; });
    }

private:
    Owned full_;
};
