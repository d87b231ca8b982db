#include "orn/colour/IccTextImp.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace {

// The texts themselves are held by a law of their own.
TEST(IccText, SignaturesAreFourCharactersTheFirstOneHighest) {
    EXPECT_EQ(ORN::iccSignature(L"desc"), 0x64657363u);
    EXPECT_EQ(ORN::iccSignature(L"\x0164\xFF c"), 0x64FF2063u);  // only the low bytes count
    EXPECT_EQ(ORN::iccSignatureText(0x52474220), L"RGB ");
    EXPECT_EQ(ORN::iccSignatureText(0xFF008001), std::wstring(L"\xFF\0\x80\x01", 4));
    for (wchar_t const* tag : {L"", L"des", L"descr"})
        EXPECT_EQ(thrown([=] { ORN::iccSignature(tag); }), L"logic_error: ICC tags are four characters long");
}

}
