#include "orn/os/Url.h"

#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

TEST(OsUrl, TellsWhetherThereWasASchemeToApply) {
    std::wstring result = L"kept";
    EXPECT_EQ(ORN::os::applyUrlScheme(L"http://h", result), 1);
    EXPECT_EQ(ORN::os::applyUrlScheme(L"h", result), 1);
    EXPECT_EQ(result, L"kept");
    EXPECT_EQ(ORN::os::applyUrlScheme(L"www", result), 0);
    EXPECT_EQ(result, L"http://www");
    EXPECT_LT(ORN::os::applyUrlScheme((L"www" + std::wstring(ORN::os::urlRoom, L'a')).c_str(), result), 0);
    EXPECT_EQ(result, L"http://www");
}

}
