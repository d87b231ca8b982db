#include "orn/os/Locale.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/Strings.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

TEST(StringsInner, TextsThatCannotBeCollatedAreEqual) {
    EXPECT_LT(collateStrings(L"a", L"b"), 0);
    faults::Refuse const refuse{"wcscoll"};
    EXPECT_EQ(collateStrings(L"a", L"b"), 0);
    EXPECT_EQ(refuse.refusals(), 1);
}

TEST(StringsInner, AThreadWithoutALocaleOfItsOwnLeavesTheProcessAlone) {
    std::string const process = std::setlocale(LC_ALL, nullptr);
    for (auto const* call : {"_configthreadlocale", "setlocale"}) {
        faults::Refuse const refuse{call};
        AutoLocale const guard{LC_ALL};
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process) << call;
        EXPECT_GE(refuse.refusals(), 1) << call;
    }
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
}

TEST(StringsInner, WithoutMemoryNothingIsLostAndTheLocaleStays) {
    std::wstring const text(100, L'x');
    std::string const process = std::setlocale(LC_ALL, nullptr);
    std::wstring upper;
    EXPECT_GE(faults::failEveryAllocation([&] { upper = uppercase(text); }, [&](bool) {}), 2);
    EXPECT_EQ(upper, std::wstring(100, L'X'));

    // What the system keeps for a locale, it keeps from its first use on.
    { AutoLocale const first{LC_ALL}; }
    long const before = faults::liveBlocks();
    faults::failEveryAllocation([] { AutoLocale const guard{LC_ALL}; },
                                [&](bool) {
                                    EXPECT_EQ(faults::liveBlocks(), before);
                                    EXPECT_EQ(ORN::os::threadLocaleMode(0), ORN::os::processLocale);
                                });
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
    EXPECT_EQ(uppercase(L"a"), L"A");
}

}
