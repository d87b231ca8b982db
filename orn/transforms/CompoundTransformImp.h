// Two transforms, one after the other: what composition gives when no closed form holds both.
#pragma once

#include "orn/transforms/Transform.h"

#include <memory>
#include <ostream>
#include <utility>

template <int N>
class CompoundTransform final : public Transform<N> {
public:
    using Owned = std::unique_ptr<Transform<N>>;

    CompoundTransform(Owned first, Owned second) noexcept : first_{std::move(first)}, second_{std::move(second)} {}

    Transform<N> const& first() const noexcept { return *first_; }
    Transform<N> const& second() const noexcept { return *second_; }

    Transform<N>* clone() const override {
        Owned second{second_->clone()};
        Owned first{first_->clone()};
        return new CompoundTransform{std::move(first), std::move(second)};
    }

    Transform<N>* pInverse() const override {
        Owned last{first_->pInverse()};
        Owned begin{second_->pInverse()};
        return new CompoundTransform{std::move(begin), std::move(last)};
    }

protected:
    std::wostream& putOn(std::wostream& os) const override { return os << *first_ << L'*' << *second_; }

    Extent<N> preMultiply(Extent<N> const& e) const override { return e * *first_ * *second_; }
    Point<N> preMultiply(Point<N> const& p) const override { return p * *first_ * *second_; }
    Extent<N> preDivide(Extent<N> const& e) const override { return e / *second_ / *first_; }
    Point<N> preDivide(Point<N> const& p) const override { return p / *second_ / *first_; }

private:
    Owned first_;  // destroyed last
    Owned second_;
};
