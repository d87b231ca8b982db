#include "orn/colour/ColourProfile.h"

#include "orn/colour/ColourTransform.h"
#include "orn/colour/IccTextImp.h"
#include "orn/foundation/Error.h"
#include "orn/os/ColourManagement.h"
#include "tests/support/Faults.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace {

using ORN::ColourProfile;
using ORN::ColourProfileId;

// The element at the end of a block of its own, so that a read past it is seen by the sanitizer.
std::wstring textOf(icc::Bytes const& element) {
    std::unique_ptr<unsigned char[]> const block{new unsigned char[element.size()]};
    std::copy(element.begin(), element.end(), block.get());
    return ORN::IccElement{{block.get(), element.size()}}.text();
}

std::string failureOf(icc::Bytes const& element) {
    try {
        textOf(element);
    } catch (std::logic_error const& error) {
        return error.what();
    }
    return "";
}

icc::Bytes localized(std::uint32_t length, std::uint32_t offset, icc::Bytes const& stored) {
    return "mluc" + icc::number(0) + icc::number(1) + icc::number(12) + "deDE" + icc::number(length) +
           icc::number(offset) + stored;
}

TEST(IccText, SignaturesAreFourCharactersTheFirstOneHighest) {
    EXPECT_EQ(ORN::iccSignature(L"desc"), 0x64657363u);
    EXPECT_EQ(ORN::iccSignature(L"\x0164\xFF c"), 0x64FF2063u);  // only the low bytes count
    EXPECT_EQ(ORN::iccSignatureText(0x52474220), L"RGB ");
    EXPECT_EQ(ORN::iccSignatureText(0xFF008001), std::wstring(L"\xFF\0\x80\x01", 4));
    for (wchar_t const* tag : {L"", L"des", L"descr"}) {
        try {
            ORN::iccSignature(tag);
            ADD_FAILURE() << tag;
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(error.what(), "ICC tags are four characters long");
        }
    }
}

TEST(IccText, DescriptionsAndLocalizedTexts) {
    icc::Bytes const head = "desc" + icc::number(0);
    icc::Bytes const mo("\0M\0o", 4), pair("\xD8\x3D\xDE\x00", 4);
    struct {
        icc::Bytes element;
        std::wstring text;
    } const cases[] = {
        {head + icc::number(5) + icc::Bytes("sRGB\0", 5), L"sRGB"},
        {head + icc::number(5) + icc::Bytes("sRGB\0and more", 13), L"sRGB"},
        {head + icc::number(4) + icc::Bytes("a\0b\0", 4), std::wstring(L"a\0b", 3)},
        {head + icc::number(1) + icc::Bytes(1, '\0'), L""},
        {head + icc::number(0), L""},
        {icc::localized({mo}), L"Mo"},
        {icc::localized({mo, icc::Bytes("\0X", 2)}), L"Mo"},
        {icc::localized({}), L""},
        {localized(4, 28, pair), L"\xD83D\xDE00"},
        {localized(0, 28, ""), L""},
        {localized(2, 30, icc::Bytes("\0A\0B", 4)), L"B"},
        {localized(4, 16, ""), L"\x6465\x4445"},  // inside, be it in the record
    };
    for (auto const& [element, text] : cases) EXPECT_EQ(textOf(element), text) << element;
}

TEST(IccText, WhatReachesOutsideTheElementIsTooShort) {
    icc::Bytes const head = "desc" + icc::number(0), two("\0A", 2);
    icc::Bytes const cases[] = {
        "",
        "des",
        "desc",
        head,
        head + "\1\1\1",
        head + icc::number(5) + "sRGB",
        head + icc::number(1),
        head + icc::number(0x80000000) + "text",
        head + icc::number(0xFFFFFFFF) + "text",
        "mluc" + icc::number(0),
        "mluc" + icc::number(0) + icc::number(1),
        localized(2, 28, two).substr(0, 27),
        localized(4, 28, two),
        localized(2, 29, two),
        localized(2, 27, two).substr(0, 28),
        localized(1, 28, two),
        localized(3, 28, two + two),
        localized(0, 31, two),
        localized(2, 0xFFFFFFFE, two),
        localized(0xFFFFFFFE, 28, two),
        localized(0xFFFFFFFE, 0xFFFFFFFE, two),
    };
    for (icc::Bytes const& element : cases)
        EXPECT_EQ(failureOf(element), "ICC data too short") << &element - std::begin(cases);
    EXPECT_EQ(failureOf("text" + icc::number(0) + icc::number(0)), "desc/mluc element not found in ICC data");
    EXPECT_EQ(failureOf("DESC"), "desc/mluc element not found in ICC data");

    // Every cut of a good element is either refused or still holds the whole text.
    for (icc::Bytes const& good : {icc::description("sRGB"), icc::localized({two, two + two})})
        for (std::size_t length = 0; length != good.size(); ++length)
            if (failureOf(good.substr(0, length)) == "") {
                EXPECT_EQ(textOf(good.substr(0, length)), textOf(good)) << length;
            }
}

// What a failed creation must leave behind: nothing. A file that is still open shows as a descriptor, or cannot be
// removed.
class Creation {
public:
    Creation() {
        icc::Tags tags = icc::tags(icc::power(0x100));
        for (char const* tag : {"dmnd", "dmdd", "desc"})
            tags.emplace_back(tag, icc::description("a text of some length"));
        bytes_ = icc::profile(tags);
        name_ = folder_.put("profile.icc", bytes_);
    }

    void fromFile() const { ColourProfile::createFromFile(name_); }
    void fromBytes() const { ColourProfile::create(ColourProfileId::fromData, icc::data(bytes_), bytes_.size()); }

    std::wstring failure(std::function<void()> const& create) const {
        std::ptrdiff_t const files = openFiles();
        long const blocks = faults::liveBlocks();
        std::wstring text;
        try {
            create();
        } catch (WinError const& error) {
            std::wstring const told = error.wWhat();
            text = told.substr(told.rfind(L' ') + 1);
        }
        long const left = faults::liveBlocks() - blocks - (text.capacity() > std::wstring{}.capacity());
        EXPECT_EQ(left, 0);
        EXPECT_EQ(openFiles(), files);
        return text;
    }

    static std::ptrdiff_t openFiles() {
        std::error_code none;
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd", none}, {});
    }

private:
    TemporaryFolder folder_;
    icc::Bytes bytes_;
    std::wstring name_;
};

TEST(ColourProfile, EveryRefusedStepIsNamedAndReleasesWhatCameBefore) {
    Creation const creation;
    struct {
        char const* call;
        int spared;
        wchar_t const* named;
    } const cases[] = {
        {"OpenColorProfile", 0, L"OpenColorProfile"},
        {"GetColorProfileFromHandle", 0, L"GetColorProfileFromHandle"},
        {"GetColorProfileFromHandle", 1, L"GetColorProfileFromHandle"},
        {"GetColorProfileHeader", 0, L"GetColorProfileHeader"},
        {"GetColorProfileElement", 1, L"GetColorProfileElement"},
        {"GetColorProfileElement", 3, L"GetColorProfileElement"},
        {"GetColorProfileElement", 5, L"GetColorProfileElement"},
    };
    for (auto const& [call, spared, named] : cases) {
        for (bool file : {false, true}) {
            faults::Refuse const refuse{call, spared};
            EXPECT_EQ(creation.failure([&] { file ? creation.fromFile() : creation.fromBytes(); }), named) << spared;
            EXPECT_GE(refuse.refusals(), 1);
        }
    }
    for (int spared : {0, 1}) {
        faults::Refuse const refuse{"GetStandardColorSpaceProfile", spared};
        EXPECT_EQ(creation.failure([] { ColourProfile::create(ColourProfileId::sRGB); }),
                  L"GetStandardColorSpaceProfile");
    }
}

TEST(ColourProfile, NoFailedAllocationLeavesAnythingBehind) {
    Creation const creation;
    ColourProfile::create(ColourProfileId::sRGB);
    std::function<void()> const ways[] = {[&] { creation.fromFile(); }, [&] { creation.fromBytes(); },
                                          [] { ColourProfile::create(ColourProfileId::sRGB); }};
    for (auto const& create : ways) {
        std::ptrdiff_t const files = Creation::openFiles();
        long const blocks = faults::liveBlocks();
        int const failures = faults::failEveryAllocation(create, [&](bool failed) {
            EXPECT_TRUE(failed);
            EXPECT_EQ(faults::liveBlocks(), blocks);
        });
        EXPECT_GE(failures, 4);
        EXPECT_EQ(faults::liveBlocks(), blocks);
        EXPECT_EQ(Creation::openFiles(), files);
    }
}

TEST(ColourTransform, AFailedTransformIsNamedAndLeavesNothingBehind) {
    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    auto const create = [&] { return ORN::ColourTransform::create({}, *profile, *profile); };
    {
        faults::Refuse const refuse{"CreateMultiProfileTransform"};
        EXPECT_EQ(Creation{}.failure(create), L"CreateMultiProfileTransform");
    }
    long const blocks = faults::liveBlocks();
    EXPECT_GE(faults::failEveryAllocation(create, [&](bool) { EXPECT_EQ(faults::liveBlocks(), blocks); }), 1);
    EXPECT_TRUE(profile.isLastHandle());

    auto const transform = create();
    Colour const in = Colour::rgb(0.1, 0.2, 0.3);
    Colour out = Colour::rgb(0.4, 0.5, 0.6);
    faults::Refuse const refuse{"TranslateColors"};
    EXPECT_EQ(Creation{}.failure([&] { transform->convert({&in, 1}, {&out, 1}); }), L"TranslateColors");
    EXPECT_EQ(out.r(), 0.4);
}

}
