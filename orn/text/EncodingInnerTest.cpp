#include "orn/text/Encoding.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"

namespace {

TEST(EncodingInner, AnEmptyTextIsNotConverted) {
    for (char const* call : {"WideCharToMultiByte", "MultiByteToWideChar"}) {
        faults::Refuse const refuse{call};
        EXPECT_EQ(utf8(getMBS(L"")) + getWCS(""), L"");
        EXPECT_EQ(refuse.refusals(), 0);
    }
}

// The empty prefix is offered as well, and is not a length that can be converted.
TEST(EncodingInner, PackToFailsWhenNotEvenOneCodePointFits) {
    if (getMBS(L"\u4E2D").size() < 2) GTEST_SKIP() << "one byte a character";
    char buffer[2] = "x";
    EXPECT_THROW(packTo(L"\u4E2D", buffer, 2), WinError);
    EXPECT_STREQ(buffer, "");
}

TEST(EncodingInner, PackToCutsALongTextInFewConversions) {
    faults::Refuse const sparing{"WideCharToMultiByte", 30};
    std::string buffer(400'000, '#');
    EXPECT_EQ(packTo(std::wstring(1'000'000, L'x'), buffer.data(), 400'000), 399'999u);
}

}
