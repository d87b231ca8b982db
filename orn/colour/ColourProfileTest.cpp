#include "orn/colour/ColourProfile.h"

#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace {

using ORN::ColourProfile;
using ORN::ColourProfileId;

ORN::Handle<ColourProfile> opened(icc::Bytes const& bytes) {
    return ColourProfile::create(ColourProfileId::fromData, icc::data(bytes), bytes.size());
}

icc::Bytes withTexts(icc::Tags const& texts) {
    icc::Tags tags = icc::tags(icc::power(0x100));
    tags.insert(tags.end(), texts.begin(), texts.end());
    return icc::profile(tags);
}

TEST(ColourProfile, EachWayOfCreationTakesOnlyItsOwnIdAndASizeOf32Bits) {
    icc::Bytes const bytes = withTexts({});
    wchar_t const* const illegal = L"logic_error: Illegal value of ORN::ColourProfileId";
    for (int id : {-1, 1, -2, 0x7FFFFFFF})
        EXPECT_EQ(thrown([=] { return ColourProfile::create(static_cast<ColourProfileId>(id)); }), illegal) << id;
    for (int id : {0, 1, -2}) {
        auto const given = static_cast<ColourProfileId>(id);
        EXPECT_EQ(thrown([&] { return ColourProfile::create(given, icc::data(bytes), bytes.size()); }), illegal) << id;
        EXPECT_EQ(thrown([&] { return ColourProfile::create(given, nullptr, 0x1'0000'0000); }), illegal) << id;
    }
    for (std::uint64_t size : {0x1'0000'0000ull, ~0ull})
        EXPECT_EQ(thrown([=] { return ColourProfile::create(ColourProfileId::fromData, nullptr, size); }),
                  L"OrnError: integer value right out of range");
}

TEST(ColourProfile, TheStandardProfileIsRGBForADisplay) {
    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    EXPECT_TRUE(profile.isLastHandle() && profile->id() == ColourProfileId::sRGB && profile->handle() != nullptr);
    EXPECT_EQ(profile->colourSpace() + profile->profileClass(), L"RGB mntr");
    EXPECT_NE(profile->displayName().find(L"sRGB"), std::wstring::npos);
    DWORD size = 0;
    unsigned char const* const bytes = profile->data(size);
    ASSERT_GT(size, 128u);
    EXPECT_EQ(std::string(bytes + 36, bytes + 40), "acsp");
}

TEST(ColourProfile, BytesAndFileGiveTheSameProfile) {
    icc::Bytes const bytes = withTexts({{"dmnd", icc::description("Maker")},
                                        {"dmdd", icc::localized(icc::Bytes("\0M\0o\x04\x3C", 6))},
                                        {"desc", icc::description("sRGB")}});
    TemporaryFolder const folder;
    icc::Bytes source = bytes;
    auto const fromBytes = opened(source);
    source.assign(source.size(), '\xFF');
    auto const fromFile = ColourProfile::createFromFile(folder.put("a profile.icc", bytes));
    for (auto const& profile : {fromBytes, fromFile}) {
        EXPECT_EQ(profile->id(), ColourProfileId::fromData);
        EXPECT_EQ(profile->colourSpace() + profile->profileClass() + profile->displayName(), L"RGB mntrsRGB");
        EXPECT_EQ(profile->fullDescription(), L"Manufacturer: Maker\nModel: Mo\u043C\nDescription: sRGB");
        DWORD size = 0;
        unsigned char const* const kept = profile->data(size);
        EXPECT_EQ(std::string(kept, kept + size), bytes);
    }
    EXPECT_NE(fromBytes->handle(), fromFile->handle());
}

TEST(ColourProfile, AMissingTextIsEmptyAndADamagedOneMakesNoProfile) {
    EXPECT_EQ(opened(withTexts({}))->fullDescription(), L"Manufacturer: \nModel: \nDescription: ");
    for (char const* tag : {"dmnd", "dmdd", "desc"})
        EXPECT_EQ(thrown([&] {
                      opened(withTexts({{tag, icc::description("text", 0xFFFFFFFF)}}));
                  }),
                  L"logic_error: ICC data too short");
}

TEST(ColourProfile, WhatTheSystemCannotOpenIsAnErrorThatNamesTheCall) {
    TemporaryFolder const folder;
    icc::Bytes unsigned_ = withTexts({});
    unsigned_.replace(36, 4, "none");
    auto const expectRefused = [](auto open) {
        std::wstring const failure = thrown(open);
        EXPECT_TRUE(failure.starts_with(L"WinError: Error \"") && failure.ends_with(L"\" calling OpenColorProfile"));
    };
    for (auto const& name : {folder / L"missing.icc", folder.put("short.icc", "not a profile"), folder.name()})
        expectRefused([&] { return ColourProfile::createFromFile(name); });
    for (icc::Bytes const& bytes : {icc::Bytes{}, withTexts({}).substr(0, 100), unsigned_, icc::Bytes(300, 'x')})
        expectRefused([&] { opened(bytes); });
    EXPECT_EQ(folder.count(), 1);
}

}
