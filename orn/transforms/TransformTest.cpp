// The laws that every kind of transform obeys, alone and composed, and what affine ones, slices and an application's own
// kinds add to them.
#include "orn/transforms/Composition.h"

#include "tests/support/Transforms.h"

#include <array>
#include <map>
#include <typeinfo>

namespace {

using transforms::Random;

/// A transform of the application's own: bends the plane, and is no class of the library. It may note when it is copied,
/// inverted and destroyed.
class Bend final : public Transform<2> {
public:
    explicit Bend(double amount, std::wostream* notes = nullptr) : amount_{amount}, notes_{notes} {}
    ~Bend() override { note(L'~'); }
    Transform* clone() const override { return note(L'c'), new Bend{amount_, notes_}; }
    Transform* pInverse() const override { return note(L'i'), new Bend{-amount_, notes_}; }

protected:
    std::wostream& putOn(std::wostream& os) const override { return os << L"bend " << amount_; }
    using Transform::preDivide;
    using Transform::preMultiply;
    Point<2> preMultiply(Point<2> const& p) const override { return {p.x() + amount_ * p.y() * p.y(), p.y()}; }
    Point<2> preDivide(Point<2> const& p) const override { return {p.x() - amount_ * p.y() * p.y(), p.y()}; }

private:
    void note(wchar_t what) const {
        if (notes_ != nullptr) *notes_ << what << amount_;
    }

    double amount_;
    std::wostream* notes_;
};

/// An application's own kind of similarity, which no value of the library's can stand for.
class Turned final : public UniformTransform<2> {};

/// The class, also of what only the library sees.
template <int N>
std::string kindOf(Transform<N> const& t) {
    std::string const name = typeid(t).name();
    for (char const* kind : {"NonUniform", "Uniform", "Perspective", "Compound", "Sliced"})
        if (name.find(kind) != name.npos) return kind;
    return name;
}

template <class D>
class TransformOf : public testing::Test {};
TYPED_TEST_SUITE(TransformOf, PlaneAndSpace);

TYPED_TEST(TransformOf, EveryKindMapsThereAndBackAndIsCopiedAndInverted) {
    constexpr int N = TypeParam::value;
    Random<N> random{42};
    for (int round = 0; round < 40; ++round)
        for (auto const& [name, t] : random.oneOfEach()) {
            SCOPED_TRACE(name);
            auto const clone = cloneOf(*t), inverse = inverseOf(*t);
            EXPECT_TRUE(kindOf(*clone) == kindOf(*t) && kindOf(*inverse) == kindOf(*t));
            EXPECT_EQ(written(*clone), written(*t));
            Point<N> const p = random.point();
            Point<N> moved = p;
            EXPECT_TRUE(p * *clone == p * *t && (moved *= *t) == p * *t && (moved /= *t) == p * *t / *t);
            expectNear(moved, p, 1e-6);
            expectNear(p * *t * *inverse, p, 1e-6);
            expectNear(p / *inverse, p * *t, 1e-6);
            Extent<N> const e{random.point(), random.point()};
            Extent<N> grown = e;
            EXPECT_TRUE((grown *= *t) == e * *t && (grown /= *t) == e * *t / *t);
            EXPECT_TRUE(Extent<N>::nothing() * *t == Extent<N>::nothing());
        }
}

TYPED_TEST(TransformOf, CompositionPicksTheMostSpecificClass) {
    constexpr int N = TypeParam::value;
    // Row by row the first of the two; a slice is as good as a compound.
    std::map<std::string, std::array<std::string, 4>> const expected{
        {"uniform", {"Uniform", "NonUniform", "Perspective", "Compound"}},
        {"non-uniform", {"NonUniform", "NonUniform", "Perspective", "Compound"}},
        {"perspective", {"Perspective", "Perspective", "Compound", "Compound"}},
        {"compound", {"Compound", "Compound", "Compound", "Compound"}},
        {"sliced", {"Compound", "Compound", "Compound", "Compound"}}};
    Random<N> random{41};
    auto const all = random.oneOfEach();
    for (auto const& [firstName, first] : all)
        for (std::size_t i = 0; i < all.size(); ++i) {
            auto const& [secondName, second] = all[i];
            SCOPED_TRACE(firstName + ", " + secondName);
            auto const both = compose(*first, *second);
            EXPECT_EQ(kindOf(*both), expected.at(firstName)[std::min<std::size_t>(i, 3)]);
            if (kindOf(*both) == "Compound") {
                EXPECT_EQ(written(*both), written(*first) + L'*' + written(*second));
            }
            for (int round = 0; round < 10; ++round) {
                Point<N> const p = random.point();
                expectNear(p * *both, p * *first * *second, 1e-9);
                expectNear(p * *both / *both, p, 1e-6);
            }
        }

    // By value, the same class and the same numbers.
    auto const same = [](auto const& a, auto const&... others) {
        auto const with = [&a](auto const& b) {
            auto const value = compose(a, b);
            std::unique_ptr<Transform<N>> const owned{static_cast<Transform<N> const&>(a).composeWith(b)};
            EXPECT_TRUE(typeid(value) == typeid(*owned) && written(value) == written(*owned));
        };
        (with(others), ...);
    };
    auto const uniform = random.uniform();
    auto const affine = random.nonUniform();
    auto const perspective = random.perspective();
    same(uniform, uniform, affine);
    same(affine, uniform, affine);
    same(perspective, uniform, affine);
    static_assert(std::same_as<decltype(compose(uniform, perspective)), std::unique_ptr<Transform<N>>>);
    static_assert(std::same_as<decltype(compose(Turned{}, Turned{})), std::unique_ptr<Transform<2>>>);
}

TYPED_TEST(TransformOf, AffineOnesMapVectorsBoxesAndHomogeneousRows) {
    constexpr int N = TypeParam::value;
    Random<N> random{3};
    for (int round = 0; round < 200; ++round) {
        NonUniformTransform<N> const a = random.nonUniform();
        UniformTransform<N> const b = random.uniform();
        Point<N> const p = random.point();
        Vector<N> const v = random.vector();
        Vector<N> turned = v;
        EXPECT_TRUE((turned *= a) == v * a && (turned /= a) == v * a / a);
        expectNear(Point<N>{} + turned, Point<N>{} + v, 1e-12);
        expectNear((p + v) * a, p * a + v * a, 1e-12);
        EXPECT_EQ(Point<N>{} * a, Point<N>{} + a.translation());

        double row[N + 1], rows[N + 1][N];
        p.packToPod(row);
        row[N] = 1;
        Vector<N + 1> const image{Vector<N + 1>{row}, a.homogeneous()};
        for (int i = 0; i < N; ++i) EXPECT_EQ(image[i], (p * a)[i]);
        a.packToPod(rows);
        EXPECT_EQ(written(NonUniformTransform<N>::createFromPod(rows)), written(a));

        NonUniformTransform<N> ab{a}, self{a};
        NonUniformTransform<N> const& same = self;
        expectNear(p * (ab *= b), p * a * b, 1e-12);
        expectNear((ab /= b).homogeneous(), a.homogeneous(), 1e-12);
        expectNear((self /= same).homogeneous(), Matrix<N + 1>{}, 1e-12);

        Extent<N> const e{p, random.point()};
        Extent<N> box, back;
        for (unsigned int k = 0; k < 1U << N; ++k) box += e.corner(k) * a, back += e.corner(k) / a;
        EXPECT_TRUE(e * a == box && e / a == back);
    }
    // What is empty on one axis only comes back as it is, and not as the canonical empty extent.
    double bounds[2][N] = {};
    bounds[0][N - 1] = 1;
    Extent<N> const empty{bounds};
    EXPECT_TRUE(empty * random.uniform() == empty && empty / random.uniform() == empty);
}

TEST(Transform, ACompoundTakesTheSecondFirst) {
    std::wostringstream notes;
    auto const noted = [&] { return std::exchange(notes, {}).str(); };
    Bend const a{1, &notes}, b{2, &notes};
    auto both = compose<2>(a, b);
    EXPECT_EQ(noted(), L"c2c1");
    auto clone = cloneOf(*both), inverse = inverseOf(*both);
    EXPECT_EQ(noted(), L"c2c1i1i2");
    EXPECT_EQ(written(*clone, *inverse), L"bend 1*bend 2bend -2*bend -1");
    both.reset();
    EXPECT_EQ(noted(), L"~2~1");
}

TEST(Transform, ACompoundMapsExtentsOneMemberAfterTheOther) {
    auto const turn = UniformTransform<2>::rotation(Angle::degrees(45));
    Bend const bend{0.5};
    auto const both = compose(turn, static_cast<Transform<2> const&>(bend));
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
        std::unique_ptr<Transform<2>> const before{bend.composeWith(*t)}, after{t->composeWith(bend)};
        EXPECT_EQ(written(*before, *after), L"bend 2*" + written(*t, *t) + L"*bend 2");
        Point<2> const p{0.5, -0.25};
        EXPECT_EQ(p * *after, p * *t * bend);
        expectNear(p * *before * *inverseOf(*before), p, 1e-6);
    }
    // Slicing the plane is not implemented for affine transforms only.
    EXPECT_EQ(kindOf(*sliceOf<2>(bend)), "Sliced");
}

TEST(Transform, ASliceWorksAtZeroHeight) {
    auto const flat = [](Point<3> const& p) { return Point<2>{p.x(), p.y()}; };
    Random<3> random{44};
    for (int round = 0; round < 50; ++round) {
        auto const full = compose<3>(random.perspective(), random.perspective());
        auto const slice = sliceOf(*full);
        Point<3> const p = random.point(), ground{p.x(), p.y(), 0};
        EXPECT_TRUE(flat(p) * *slice == flat(ground * *full) && flat(p) / *slice == flat(ground / *full));
        EXPECT_EQ(written(kindOf(*slice).c_str(), *slice), written("Sliced", *full));
        Extent<3> const box = Extent<3>{ground, {0, 0, 0}} * *full;
        EXPECT_TRUE((Extent<2>{flat(p), {0, 0}} * *slice == Extent<2>{flat(box.lo()), flat(box.hi())}));
    }
    // Empty stays empty, and what the full transform makes empty is empty: all of it is behind the eye.
    auto const front = compose<3>(PerspectiveTransform<3>{}, PerspectiveTransform<3>{}.inverse());
    auto const slice = sliceOf(*compose<3>(UniformTransform<3>::translation({0, 0, 5}), *front));
    double const bounds[2][2] = {{0, 2}, {1, -1}};
    EXPECT_TRUE(Extent<2>{bounds} * *slice == Extent<2>::nothing());
    EXPECT_TRUE((Extent<2>{{1, 1}, {2, 2}} * *slice == Extent<2>::nothing()));

    // Of an affine transform it is the part in the plane, and affine.
    double const rows[4][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
    auto const plane = sliceOf(*cloneOf<3>(NonUniformTransform<3>::createFromPod(rows)));
    EXPECT_EQ(written(*plane), L"(10,11)+[1,2/4,5]");
    EXPECT_TRUE(kindOf(*plane) == "NonUniform" && kindOf(*sliceOf<3>(UniformTransform<3>{})) == "NonUniform");
}

}
