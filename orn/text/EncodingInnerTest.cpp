#include "orn/text/Encoding.h"

#include "tests/support/Faults.h"

namespace {

TEST(EncodingInner, FewConversionsAreAsked) {
    for (char const* call : {"WideCharToMultiByte", "MultiByteToWideChar"}) {
        faults::Refuse const refuse{call};
        EXPECT_EQ(utf8(getMBS(L"")) + getWCS(""), L"");
        EXPECT_EQ(refuse.refusals(), 0);
    }
    faults::Refuse const sparing{"WideCharToMultiByte", 30};
    std::string buffer(400'000, '#');
    EXPECT_EQ(packTo(std::wstring(1'000'000, L'x'), buffer.data(), 400'000), 399'999u);
}

}
