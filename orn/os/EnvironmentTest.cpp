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

TEST(Environment, ExpandsTheNamesThatItHasAndLeavesTheRest) {
    std::wstring const path = ORN::os::environmentVariable(L"PATH");
    std::wstring const none = L"%ORN_NOBODY_SETS_THIS%";
    struct {
        std::wstring text, expanded;
    } const cases[] = {
        {L"", L""},
        {L"%", L"%"},
        {L"%%", L"%%"},
        {L"a%b", L"a%b"},
        {none, none},
        {L"100% of " + none, L"100% of " + none},
        {L"<%PATH%>%PATH%", L"<" + path + L">" + path},
        {none.substr(0, none.size() - 1) + L"%PATH%", none + L"PATH%"},  // its second sign begins no other name
        {L"100% of %PATH%", L"100% of %PATH%"},
        {none + L"%PATH%", none + path},
        {L"%PATH", L"%PATH"},
    };
    for (auto const& [text, expanded] : cases) {
        auto const needed = static_cast<DWORD>(expanded.size() + 1);
        std::wstring buffer(needed + 1, L'!');
        EXPECT_EQ(ORN::os::expandEnvironment(text.c_str(), buffer.data(), needed), needed);
        EXPECT_EQ(buffer.c_str(), expanded);
        EXPECT_EQ(buffer.back(), L'!');
        EXPECT_EQ(ORN::os::expandEnvironment(text.c_str(), buffer.data(), 0), needed);
    }
}

}
