#include "orn/os/Environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

TEST(Environment, GivesWholeValuesAndNothingForUnsetNames) {
    // The one variable that both systems have in every environment.
    EXPECT_FALSE(ORN::os::environmentVariable(L"PATH").empty());
    EXPECT_EQ(ORN::os::environmentVariable(L"ORN_NOBODY_SETS_THIS"), L"");
    EXPECT_EQ(ORN::os::environmentVariable(L""), L"");
}

}
