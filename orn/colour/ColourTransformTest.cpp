#include "orn/colour/ColourTransform.h"

#include "tests/support/IccProfile.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace {

using ORN::ColourProfile;
using ORN::ColourProfileId;
using ORN::ColourTransform;
using ORN::RenderingIntent;
using Profile = ORN::Handle<ColourProfile>;
using Transform = ORN::Handle<ColourTransform>;

RenderingIntent const relative = RenderingIntent::relativeColorimetric;

Profile opened(icc::Bytes const& bytes) {
    return ColourProfile::create(ColourProfileId::fromData, icc::data(bytes), bytes.size());
}
Profile withPower(unsigned int exponent256) { return opened(icc::profile(icc::tags(icc::power(exponent256)))); }

void expectColour(Colour const& colour, double r, double g, double b, double a = 1) {
    double const tolerance = 0.001;  // systems differ in how finely they tabulate
    EXPECT_NEAR(colour.r(), r, tolerance);
    EXPECT_NEAR(colour.g(), g, tolerance);
    EXPECT_NEAR(colour.b(), b, tolerance);
    EXPECT_EQ(colour.a(), a);
}

Colour converted(Transform const& transform, Colour const& colour) {
    Colour result;
    transform->convert({&colour, 1}, {&result, 1});
    return result;
}

template <class... Profiles>
Colour through(Colour const& colour, Profiles const&... profiles) {
    return converted(ColourTransform::create(relative, *profiles...), colour);
}

TEST(ColourTransform, CurvesAndPrimariesTakeEffect) {
    for (int intent : {0, 1, 2, 3}) {
        // The profiles are gone before the transform is used.
        auto const toLinear =
            ColourTransform::create(static_cast<RenderingIntent>(intent), *withPower(0x200), *withPower(0x100));
        EXPECT_TRUE(toLinear.isLastHandle() && toLinear->handle() != nullptr);
        expectColour(converted(toLinear, Colour::rgba(0.5, 0.25, 0.75, 0.3)), 0.25, 0.0625, 0.5625, 0.3);
    }
    auto const linear = withPower(0x100);
    expectColour(through(Colour::rgb(0.64, 0.49, 0.81), withPower(0x300), withPower(0x200)), 0.512, 0.343, 0.729);
    // The first profile's red is the second one's green, and so on.
    auto const& [red, green, blue] = icc::sRGBPrimaries;
    auto const rotated = opened(icc::profile(icc::tags(icc::power(0x100), {blue, red, green})));
    expectColour(through(Colour::rgb(0.2, 0.4, 0.6), linear, rotated), 0.6, 0.2, 0.4);
    // The standard profile to linear light: ((x + 0.055) / 1.055)^2.4, below 0.04045 x / 12.92.
    auto const standard = ColourProfile::create(ColourProfileId::sRGB);
    expectColour(through(Colour::rgb(0.02, 0.5, 0.8), standard, linear), 0.0015480, 0.2140411, 0.6038273);
}

TEST(ColourTransform, ComponentsAreClampedAndResultsMayReplaceColours) {
    auto const transform = ColourTransform::create(relative, *withPower(0x100), *withPower(0x200));
    double const infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    expectColour(converted(transform, Colour::rgba(-1, 7, 0.25, 4)), 0, 1, 0.5, 4);
    expectColour(converted(transform, Colour::rgba(nan, infinity, -infinity, -1)), 0, 1, 0, -1);

    std::vector<Colour> colours;
    for (int i = 0; i != 1000; ++i) colours.push_back(Colour::rgba(i / 999.0, 0, 1 - i / 999.0, i));
    transform->convert(colours, colours);
    for (int i = 0; i < 1000; i += 37)
        expectColour(colours[static_cast<std::size_t>(i)], std::sqrt(i / 999.0), 0, std::sqrt(1 - i / 999.0), i);
    transform->convert({}, {});
}

// A profile of an application's own, over one of the library's.
class Witness : public ColourProfile {
public:
    Witness(Profile profile, std::vector<Witness const*>& asked) : profile_{std::move(profile)}, asked_{asked} {}

    ColourProfileId id() const override { return profile_->id(); }
    std::wstring colourSpace() const override { return profile_->colourSpace(); }
    std::wstring profileClass() const override { return profile_->profileClass(); }
    std::wstring displayName() const override { return profile_->displayName(); }
    std::wstring fullDescription() const override { return profile_->fullDescription(); }
    unsigned char const* data(DWORD& size) const override { return profile_->data(size); }
    HPROFILE handle() const override {
        asked_.push_back(this);
        return profile_->handle();
    }

private:
    Profile profile_;
    std::vector<Witness const*>& asked_;
};

TEST(ColourTransform, ProfilesAreJoinedInTheirOrder) {
    std::vector<Witness const*> asked;
    // The inner profiles cannot hold components above a half and above a quarter.
    auto const narrow = [](double scale) {
        return opened(icc::profile(icc::tags(icc::straight(), icc::sRGBPrimaries, scale)));
    };
    Witness const square{withPower(0x200), asked}, half{narrow(0.5), asked}, quarter{narrow(0.25), asked},
        linear{withPower(0x100), asked};

    expectColour(through(Colour::rgb(0.9, 0.6, 0.3), &square, &linear), 0.81, 0.36, 0.09);
    EXPECT_EQ(asked, (std::vector<Witness const*>{&square, &linear}));

    asked.clear();
    auto const three = [&] { return through(Colour::rgb(0.9, 0.6, 0.3), &square, &half, &linear); };
    auto const four = [&] { return through(Colour::rgb(0.9, 0.6, 0.3), &square, &half, &quarter, &linear); };
    if (std::getenv("WINEPREFIX") == nullptr) {  // Wine joins two profiles at most
        expectColour(three(), 0.5, 0.36, 0.09);
        expectColour(four(), 0.25, 0.25, 0.09);
    } else {
        EXPECT_THROW(three(), WinError);
        EXPECT_THROW(four(), WinError);
    }
    EXPECT_EQ(asked, (std::vector<Witness const*>{&square, &half, &linear, &square, &half, &quarter, &linear}));
}

TEST(ColourTransform, OnlyRGBAndAsManyResultsAsColoursAreConverted) {
    class Foreign : public ColourTransform {
        HTRANSFORM handle() const override { return nullptr; }
    };
    // Its class makes it end in the connection space, which stands behind 20 bytes of its header.
    struct Link : Witness {
        Link(Profile profile, std::vector<Witness const*>& asked, icc::Bytes const& space)
            : Witness{profile, asked}, header{icc::Bytes(20, ' ') + space} {}
        std::wstring profileClass() const override { return L"link"; }
        unsigned char const* data(DWORD& size) const override {
            size = static_cast<DWORD>(header.size());
            return icc::data(header);
        }
        icc::Bytes header;
    };
    auto const rgb = withPower(0x100);
    icc::Tags const greyTags{{"wtpt", icc::xyz({0.9642, 1, 0.8249})}, {"kTRC", icc::power(0x100)}};
    auto const grey = opened(icc::profile(greyTags, "GRAY"));
    std::vector<Witness const*> asked;
    Link const toXYZ{rgb, asked, "XYZ "}, toRGB{rgb, asked, "RGB "};

    std::vector<Colour> const in{Colour::rgb(0.1, 0.2, 0.3), Colour::rgb(0.4, 0.5, 0.6)};
    std::vector<Colour> out{2, Colour::rgb(0.7, 0.8, 0.9)}, fewer(1), more(3);
    auto const refusal = [&](ColourTransform const& transform, std::vector<Colour>& results) {
        return thrown([&] { transform.convert(in, results); });
    };
    auto const joined = [&](ColourProfile const& first, ColourProfile const& last) {
        return refusal(*ColourTransform::create(relative, first, last), out);
    };
    wchar_t const* const notRGB = L"logic_error: only a transform from RGB to RGB converts colours";
    for (auto const& failure : {joined(*rgb, *grey), joined(*grey, *rgb), joined(*rgb, toXYZ), refusal(Foreign{}, out)})
        EXPECT_EQ(failure, notRGB);
    auto const transform = ColourTransform::create(relative, *rgb, *rgb);
    for (auto* results : {&fewer, &more})
        EXPECT_EQ(refusal(*transform, *results), L"logic_error: there must be as many results as colours to convert");
    expectColour(out[1], 0.7, 0.8, 0.9);
    EXPECT_EQ(joined(toXYZ, toRGB), L"nothing");
    expectColour(out[1], 0.4, 0.5, 0.6);
}

TEST(ColourTransform, ThreadsShareATransformAndItsColours) {
    auto const transform = ColourTransform::create(relative, *withPower(0x200), *withPower(0x100));
    std::vector<Colour> colours;
    for (int i = 0; i != 500; ++i) colours.push_back(Colour::hsv(Angle{}, 0, i / 499.0));  // RGB is still to compute
    std::vector<std::jthread> threads;
    for (int k = 0; k != 4; ++k)
        threads.emplace_back([&] {
            std::vector<Colour> mine(colours.size());
            for (int round = 0; round != 20; ++round) transform->convert(colours, mine);
            for (std::size_t i = 0; i < mine.size(); i += 7) {
                double const x = static_cast<double>(i) / 499;
                expectColour(mine[i], x * x, x * x, x * x);
            }
        });
}

}
