#include "orn/text/Encoding.h"

#include "tests/support/Faults.h"

namespace {

TEST(EncodingInner, PackToCutsALongTextInFewConversions) {
    faults::Refuse const sparing{"WideCharToMultiByte", 30};
    std::string buffer(400'000, '#');
    EXPECT_EQ(packTo(std::wstring(1'000'000, L'x'), buffer.data(), 400'000), 399'999u);
}

}
