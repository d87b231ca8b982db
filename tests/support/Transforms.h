/// Transforms and points at random, and what the tests of transforms ask of them.
#pragma once

#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/PerspectiveTransform.h"
#include "orn/transforms/UniformTransform.h"
#include "tests/support/Geometry.h"

#include <memory>
#include <vector>

namespace transforms {

/// Coordinates of a few units, transforms far from singular, points off the plane of the eye.
template <int N>
class Random : public RandomGeometry {
public:
    using RandomGeometry::RandomGeometry;

    Vector<N> vector() { return RandomGeometry::vector<N>(5); }
    Point<N> point() { return RandomGeometry::point<N>(5); }

    UniformTransform<N> uniform() {
        auto t = UniformTransform<N>::scale(this->number(0.5, 2));
        if constexpr (N == 2)
            t *= UniformTransform<2>::rotation(Angle::degrees(this->number(-180, 180)));
        else
            t *= UniformTransform<3>::rotation(Angle::degrees(this->number(-180, 180)), vector());
        return t *= UniformTransform<N>::translation(vector());
    }

    NonUniformTransform<N> nonUniform() {
        NonUniformTransform<N> t{uniform()};
        if constexpr (N == 2)
            t *= NonUniformTransform<2>::axes({1, this->number(-0.5, 0.5)},
                                              {this->number(-0.5, 0.5), this->number(-3, -1)});
        else
            t *= NonUniformTransform<3>::axes({1, this->number(-0.3, 0.3), 0},
                                              {0, this->number(1, 3), this->number(-0.3, 0.3)},
                                              {this->number(-0.3, 0.3), 0, this->number(1, 2)});
        return t;
    }

    PerspectiveTransform<N> perspective() {
        // Depth −20 to −40 in front of the eye, so that points of a few units do not come near its plane.
        double c[N] = {};
        c[N - 1] = this->number(-40, -20);
        auto const away = UniformTransform<N>::translation(Vector<N>{c});
        std::unique_ptr<Transform<N>> t{away.composeWith(PerspectiveTransform<N>{})};
        auto result = dynamic_cast<PerspectiveTransform<N>&>(*t);
        return result *= nonUniform();
    }

    /// One of every kind that composition and slicing give, by name.
    std::vector<std::pair<std::string, std::unique_ptr<Transform<N>>>> oneOfEach() {
        std::vector<std::pair<std::string, std::unique_ptr<Transform<N>>>> all;
        all.emplace_back("uniform", uniform().clone());
        all.emplace_back("non-uniform", nonUniform().clone());
        all.emplace_back("perspective", perspective().clone());
        PerspectiveTransform<N> const there = perspective();
        std::unique_ptr<Transform<N>> const thereAndBack{there.composeWith(there.inverse())};
        all.emplace_back("compound", thereAndBack->composeWith(nonUniform()));
        if constexpr (N == 2) {
            // Through space, but from the plane to the plane, so that the slice has an inverse.
            auto inPlane = NonUniformTransform<3>::axes({1, this->number(-0.5, 0.5), 0},
                                                        {this->number(-0.5, 0.5), 2, 0}, {3, 4, 5});
            inPlane *= UniformTransform<3>::translation({this->number(-5, 5), this->number(-5, 5), 0});
            Random<3> space{static_cast<unsigned>(this->whole(0, 9999))};
            PerspectiveTransform<3> const up = space.perspective();
            std::unique_ptr<Transform<3>> const upAndDown{up.composeWith(up.inverse())};
            std::unique_ptr<Transform<3>> const full{inPlane.composeWith(*upAndDown)};
            all.emplace_back("sliced", full->pSlice());
        }
        return all;
    }
};

}
