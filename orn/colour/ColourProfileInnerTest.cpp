#include "orn/colour/ColourProfile.h"

#include "orn/colour/IccTextImp.h"
#include "tests/support/IccProfile.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// The element at the end of a block of its own, so that a read past it is seen by the sanitizer.
std::wstring textOf(icc::Bytes const& element) {
    std::unique_ptr<unsigned char[]> const block{new unsigned char[element.size()]};
    std::copy(element.begin(), element.end(), block.get());
    return ORN::IccElement{{block.get(), element.size()}}.text();
}

std::wstring failureOf(icc::Bytes const& element) {
    return thrown([&] { textOf(element); });
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
    for (wchar_t const* tag : {L"", L"des", L"descr"})
        EXPECT_EQ(thrown([=] { ORN::iccSignature(tag); }), L"logic_error: ICC tags are four characters long");
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
    // clang-format off
    icc::Bytes const cases[] = {
        "", "des", "desc", head, head + "\1\1\1", head + icc::number(5) + "sRGB", head + icc::number(1),
        head + icc::number(0x80000000) + "text", head + icc::number(0xFFFFFFFF) + "text",
        "mluc" + icc::number(0), "mluc" + icc::number(0) + icc::number(1), localized(2, 28, two).substr(0, 27),
        localized(4, 28, two), localized(2, 29, two), localized(2, 27, two).substr(0, 28), localized(1, 28, two),
        localized(3, 28, two + two), localized(0, 31, two), localized(2, 0xFFFFFFFE, two),
        localized(0xFFFFFFFE, 28, two), localized(0xFFFFFFFE, 0xFFFFFFFE, two),
    };
    // clang-format on
    for (icc::Bytes const& element : cases)
        EXPECT_EQ(failureOf(element), L"logic_error: ICC data too short") << &element - std::begin(cases);
    EXPECT_EQ(failureOf("text" + icc::number(0) + icc::number(0)),
              L"logic_error: desc/mluc element not found in ICC data");
    EXPECT_EQ(failureOf("DESC"), L"logic_error: desc/mluc element not found in ICC data");

    // Every cut of a good element is either refused or still holds the whole text.
    for (icc::Bytes const& good : {icc::description("sRGB"), icc::localized({two, two + two})})
        for (std::size_t length = 0; length != good.size(); ++length)
            if (failureOf(good.substr(0, length)) == L"nothing") {
                EXPECT_EQ(textOf(good.substr(0, length)), textOf(good)) << length;
            }
}

}
