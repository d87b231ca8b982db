#include "orn/foundation/MultibyteImp.h"

#include "tests/support/Faults.h"

using namespace ORN;

TEST(Multibyte, AnEmptyTextIsNotConverted) {
    for (char const* call : {"WideCharToMultiByte", "MultiByteToWideChar"}) {
        faults::Refuse const refuse{call};
        EXPECT_TRUE(toMultibyte(L"").empty() && fromMultibyte("").empty());
        EXPECT_EQ(refuse.refusals(), 0);
    }
}
