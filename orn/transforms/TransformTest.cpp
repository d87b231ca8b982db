#include "orn/transforms/Transform.h"

#include "tests/support/Transforms.h"

#include <array>

namespace {

using transforms::Random;

/// A transform of the application's own: bends the plane, and is no class of the library.
class Bend final : public Transform<2> {
public:
    explicit Bend(double amount) : amount_{amount} {}
    Transform* clone() const override { return new Bend{*this}; }
    Transform* pInverse() const override { return new Bend{-amount_}; }

protected:
    std::wostream& putOn(std::wostream& os) const override { return os << L"bend " << amount_; }
    using Transform::preDivide;
    using Transform::preMultiply;
    Point<2> preMultiply(Point<2> const& p) const override { return {p.x() + amount_ * p.y() * p.y(), p.y()}; }
    Point<2> preDivide(Point<2> const& p) const override { return {p.x() - amount_ * p.y() * p.y(), p.y()}; }

private:
    double amount_;
};

template <int N>
std::string kindOf(Transform<N> const& t) {
    if (dynamic_cast<UniformTransform<N> const*>(&t) != nullptr) return "uniform";
    if (dynamic_cast<NonUniformTransform<N> const*>(&t) != nullptr) return "non-uniform";
    if (dynamic_cast<PerspectiveTransform<N> const*>(&t) != nullptr) return "perspective";
    return "compound";
}

template <class D>
class TransformOfDimension : public testing::Test {};
TYPED_TEST_SUITE(TransformOfDimension, PlaneAndSpace);

TYPED_TEST(TransformOfDimension, CompositionPicksTheMostSpecificClass) {
    constexpr int N = TypeParam::value;
    // Row by row the first of the two; a slice is as good as a compound.
    std::map<std::string, std::array<std::string, 4>> const expected{
        {"uniform", {"uniform", "non-uniform", "perspective", "compound"}},
        {"non-uniform", {"non-uniform", "non-uniform", "perspective", "compound"}},
        {"perspective", {"perspective", "perspective", "compound", "compound"}},
        {"compound", {"compound", "compound", "compound", "compound"}},
        {"sliced", {"compound", "compound", "compound", "compound"}}};
    Random<N> random{41};
    auto const all = random.oneOfEach();
    for (auto const& [firstName, first] : all)
        for (std::size_t i = 0; i < all.size(); ++i) {
            auto const& [secondName, second] = all[i];
            SCOPED_TRACE(firstName + ", " + secondName);
            std::unique_ptr<Transform<N>> const both{first->composeWith(*second)};
            EXPECT_EQ(kindOf(*both), expected.at(firstName)[std::min<std::size_t>(i, 3)]);
            if (kindOf(*both) == "compound") {
                EXPECT_EQ(written(*both), written(*first) + L'*' + written(*second));
            }
            for (int round = 0; round < 10; ++round) {
                Point<N> const p = random.point();
                expectNear(p * *both, p * *first * *second, 1e-9);
                expectNear(p * *both / *both, p, 1e-6);
            }
        }
}

TYPED_TEST(TransformOfDimension, ClonesAndInverses) {
    constexpr int N = TypeParam::value;
    Random<N> random{42};
    for (auto const& [name, t] : random.oneOfEach()) {
        SCOPED_TRACE(name);
        std::unique_ptr<Transform<N>> const clone{t->clone()}, inverse{t->pInverse()};
        EXPECT_TRUE(kindOf(*clone) == kindOf(*t) && kindOf(*inverse) == kindOf(*t));
        EXPECT_EQ(written(*clone), written(*t));
        for (int round = 0; round < 10; ++round) {
            Point<N> const p = random.point();
            EXPECT_EQ(p * *clone, p * *t);
            expectNear(p * *t * *inverse, p, 1e-6);
            expectNear(p / *inverse, p * *t, 1e-6);
        }
    }
}

TEST(Transform, ACompoundMapsExtentsOneMemberAfterTheOther) {
    auto const turn = UniformTransform<2>::rotation(Angle::degrees(45));
    Bend const bend{0.5};
    std::unique_ptr<Transform<2>> const both{turn.composeWith(bend)};
    Extent<2> const square{{0, 0}, {1, 1}};
    EXPECT_TRUE(square * *both == square * turn * bend);
    EXPECT_TRUE(square / *both == square / bend / turn);
    // The corners' own box is smaller than that of the turned square's box.
    Extent<2> corners;
    for (unsigned int k = 0; k < 4; ++k) corners += square.corner(k) * *both;
    EXPECT_TRUE(corners < square * *both);
}

TEST(Transform, AnApplicationsOwnTransformTakesPart) {
    Bend const bend{2};
    EXPECT_EQ((Point<2>{1, 3} * bend), (Point<2>{19, 3}));
    EXPECT_TRUE((Extent<2>{{0, -1}, {1, 2}} * bend == Extent<2>{{2, -1}, {9, 2}}));
    for (auto const& [name, t] : Random<2>{43}.oneOfEach()) {
        SCOPED_TRACE(name);
        std::unique_ptr<Transform<2>> const before{bend.composeWith(*t)};
        std::unique_ptr<Transform<2>> const after{t->composeWith(bend)};
        EXPECT_EQ(written(*before), L"bend 2*" + written(*t));
        EXPECT_EQ(written(*after), written(*t) + L"*bend 2");
        std::unique_ptr<Transform<2>> const inverse{before->pInverse()};
        Point<2> const p{0.5, -0.25};
        EXPECT_EQ(p * *after, p * *t * bend);
        expectNear(p * *before * *inverse, p, 1e-6);
    }
    // Slicing the plane is not implemented for affine transforms only.
    EXPECT_NE(std::unique_ptr<Transform<1>>{bend.pSlice()}, nullptr);
}

TEST(Transform, ASliceWorksAtZeroHeight) {
    Random<3> random{44};
    for (int round = 0; round < 50; ++round) {
        std::unique_ptr<Transform<3>> const full{random.perspective().composeWith(random.perspective())};
        std::unique_ptr<Transform<2>> const slice{full->pSlice()};
        Point<3> const p = random.point();
        Point<2> const flat{p.x(), p.y()};
        Point<3> const image = Point<3>{p.x(), p.y(), 0} * *full;
        EXPECT_EQ(flat * *slice, (Point<2>{image.x(), image.y()}));
        Point<3> const back = Point<3>{p.x(), p.y(), 0} / *full;
        EXPECT_EQ(flat / *slice, (Point<2>{back.x(), back.y()}));
        EXPECT_EQ(written(*slice), written(*full));

        Extent<2> const e{flat, {0, 0}};
        Extent<3> const lifted{{e.lo().x(), e.lo().y(), 0}, {e.hi().x(), e.hi().y(), 0}};
        Extent<3> const box = lifted * *full;
        EXPECT_TRUE((e * *slice == Extent<2>{{box.lo(0), box.lo(1)}, {box.hi(0), box.hi(1)}}));
    }
    // Empty stays empty, and what the full transform makes empty is empty: all of it is behind the eye.
    std::unique_ptr<Transform<3>> const front{
        PerspectiveTransform<3>{}.composeWith(PerspectiveTransform<3>{}.inverse())};
    std::unique_ptr<Transform<3>> const behind{UniformTransform<3>::translation({0, 0, 5}).composeWith(*front)};
    std::unique_ptr<Transform<2>> const slice{behind->pSlice()};
    double const bounds[2][2] = {{0, 2}, {1, -1}};
    EXPECT_TRUE(Extent<2>{bounds} * *slice == Extent<2>::nothing());
    EXPECT_TRUE((Extent<2>{{1, 1}, {2, 2}} * *slice == Extent<2>::nothing()));
}

}
