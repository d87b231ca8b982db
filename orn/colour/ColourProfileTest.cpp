#include "orn/colour/ColourProfile.h"

#include "orn/foundation/Error.h"
#include "ornmsg/ornmsg.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

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

std::string failure(icc::Bytes const& bytes) {
    try {
        opened(bytes);
    } catch (std::logic_error const& error) {
        return error.what();
    }
    return "";
}

TEST(ColourProfile, EachWayOfCreationTakesOnlyItsOwnId) {
    icc::Bytes const bytes = withTexts({});
    auto const refused = [](auto create) {
        try {
            create();
        } catch (std::logic_error const& error) {
            return std::string{error.what()} == "Illegal value of ORN::ColourProfileId";
        }
        return false;
    };
    for (int id : {-1, 1, -2, 0x7FFFFFFF})
        EXPECT_TRUE(refused([=] { ColourProfile::create(static_cast<ColourProfileId>(id)); })) << id;
    for (int id : {0, 1, -2}) {
        auto const creation = static_cast<ColourProfileId>(id);
        EXPECT_TRUE(refused([&] { ColourProfile::create(creation, icc::data(bytes), bytes.size()); })) << id;
        EXPECT_TRUE(refused([&] { ColourProfile::create(creation, nullptr, 0x1'0000'0000); })) << id;
    }
}

TEST(ColourProfile, ASizeAbove32BitsIsRefusedBeforeAnythingIsTouched) {
    for (std::uint64_t size : {0x1'0000'0000ull, ~0ull}) {
        try {
            ColourProfile::create(ColourProfileId::fromData, nullptr, size);
            ADD_FAILURE() << size;
        } catch (ORN::OrnError const& error) {
            EXPECT_STREQ(error.wWhat(), L"integer value right out of range");
        }
    }
}

TEST(ColourProfile, TheStandardProfileIsRGBForADisplay) {
    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    EXPECT_TRUE(profile.isLastHandle());
    EXPECT_EQ(profile->id(), ColourProfileId::sRGB);
    EXPECT_EQ(profile->colourSpace(), L"RGB ");
    EXPECT_EQ(profile->profileClass(), L"mntr");
    EXPECT_NE(profile->displayName().find(L"sRGB"), std::wstring::npos);
    EXPECT_NE(profile->handle(), nullptr);
    DWORD size = 0;
    unsigned char const* const bytes = profile->data(size);
    ASSERT_GT(size, 128u);
    EXPECT_EQ(std::string(bytes + 36, bytes + 40), "acsp");
}

TEST(ColourProfile, BytesAndFileGiveTheSameProfile) {
    icc::Bytes const bytes = withTexts({{"dmnd", icc::description("Maker")},
                                        {"dmdd", icc::localized({icc::Bytes("\0M\0o\x04\x3C", 6)})},
                                        {"desc", icc::description("sRGB")}});
    TemporaryFolder const folder;
    icc::Bytes source = bytes;
    auto const fromBytes = opened(source);
    source.assign(source.size(), '\xFF');
    auto const fromFile = ColourProfile::createFromFile(folder.put("a profile.icc", bytes));
    for (auto const& profile : {fromBytes, fromFile}) {
        EXPECT_EQ(profile->id(), ColourProfileId::fromData);
        EXPECT_EQ(profile->colourSpace(), L"RGB ");
        EXPECT_EQ(profile->profileClass(), L"mntr");
        EXPECT_EQ(profile->displayName(), L"sRGB");
        EXPECT_EQ(profile->fullDescription(), L"Manufacturer: Maker\nModel: Mo\u043C\nDescription: sRGB");
        DWORD size = 0;
        unsigned char const* const kept = profile->data(size);
        EXPECT_EQ(std::string(kept, kept + size), bytes);
    }
    EXPECT_NE(fromBytes->handle(), fromFile->handle());
}

TEST(ColourProfile, AMissingTextIsEmpty) {
    EXPECT_EQ(opened(withTexts({}))->fullDescription(), L"Manufacturer: \nModel: \nDescription: ");
    EXPECT_EQ(opened(withTexts({{"desc", icc::description("", 0)}}))->displayName(), L"");
    EXPECT_EQ(opened(withTexts({{"desc", icc::localized({})}}))->displayName(), L"");
}

TEST(ColourProfile, ADamagedTextMakesNoProfile) {
    char const* const tooShort = "ICC data too short";
    for (char const* tag : {"dmnd", "dmdd", "desc"}) {
        EXPECT_EQ(failure(withTexts({{tag, "desc" + icc::number(0)}})), tooShort) << tag;
        EXPECT_EQ(failure(withTexts({{tag, icc::description("text", 0xFFFFFFFF)}})), tooShort) << tag;
        EXPECT_EQ(failure(withTexts({{tag, "text" + icc::number(0) + "words"}})),
                  "desc/mluc element not found in ICC data")
            << tag;
    }
}

TEST(ColourProfile, WhatTheSystemCannotOpenIsAnErrorThatNamesTheCall) {
    TemporaryFolder const folder;
    for (auto const& name : {folder / L"missing.icc", folder.put("short.icc", "not a profile"), folder.name()}) {
        try {
            ColourProfile::createFromFile(name);
            ADD_FAILURE();
        } catch (WinError const& error) {
            std::wstring const text = error.wWhat();
            EXPECT_EQ(text.substr(0, 7), L"Error \"");
            EXPECT_TRUE(text.ends_with(L"\" calling OpenColorProfile"));
        }
    }
    EXPECT_THROW(opened(""), WinError);
    EXPECT_EQ(folder.count(), 1);
}

}
