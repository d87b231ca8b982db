#include "orn/text/AutoLocale.h"

#include "orn/text/Strings.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <thread>

namespace {

std::wstring const small = L"\u00E9a\u044F", large = L"\u00C9A\u042F";

/// The user's locale of these tests, where the system takes it from the environment, has Unicode's letters.
class AutoLocaleTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static char setting[] = "LC_ALL=C.UTF-8";
        putenv(setting);
    }
};

TEST_F(AutoLocaleTest, HoldsForTheScopeTheThreadAndTheCategory) {
    std::wstring const before = uppercase(small);
    ASSERT_NE(before, large) << "the process's own locale must not be the user's here";
    std::string const process = std::setlocale(LC_ALL, nullptr);
    {
        AutoLocale const collation{LC_COLLATE};
        EXPECT_EQ(uppercase(small), before);
        {
            AutoLocale const characters{LC_CTYPE};
            EXPECT_EQ(uppercase(small) + lowercase(large), large + small);
            std::thread{[&] {
                EXPECT_EQ(uppercase(small), before);
                AutoLocale const own{LC_ALL};
                EXPECT_EQ(uppercase(small), large);
            }}.join();
            { AutoLocale const again{LC_ALL}; }
            EXPECT_EQ(uppercase(small), large);
        }
        EXPECT_EQ(uppercase(small), before);
        { AutoLocale const unknown{99}; }
    }
    EXPECT_EQ(uppercase(small), before);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
}

#if defined(__linux__)
TEST_F(AutoLocaleTest, TheProgramsOwnObjectIsInPlaceAgain) {
    locale_t const own = newlocale(LC_ALL_MASK, "C", nullptr);
    uselocale(own);
    {
        AutoLocale const guard{LC_CTYPE};
        { AutoLocale const inner{LC_ALL}; }
        EXPECT_EQ(uppercase(small), large);
    }
    EXPECT_EQ(uselocale(nullptr), own);
    uselocale(LC_GLOBAL_LOCALE);
    freelocale(own);
}
#endif

}
