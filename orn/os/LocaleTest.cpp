#include "orn/os/Locale.h"

#include "orn/text/Printf.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <thread>

namespace os = ORN::os;

namespace {

// Another locale than "C": the user's, or where that one is not installed, one that always is.
bool setOther(int category) { return os::setLocale(category, "") || os::setLocale(category, "C.UTF-8"); }

TEST(Locale, AThreadsOwnLocaleIsItsOwn) {
    std::string const process = os::localeName(LC_ALL);
    ASSERT_EQ(os::threadLocaleMode(os::perThreadLocale), os::processLocale);
    EXPECT_EQ(os::threadLocaleMode(0), os::perThreadLocale);
    EXPECT_EQ(os::localeName(LC_ALL), process);

    // One category at a time: the whole name lists them, and is read back.
    ASSERT_TRUE(os::setLocale(LC_ALL, "C") && setOther(LC_CTYPE));
    std::string const mixed = os::localeName(LC_ALL), own = os::localeName(LC_CTYPE);
    ASSERT_TRUE(os::setLocale(LC_ALL, "C") && os::localeName(LC_ALL) == "C");
    ASSERT_TRUE(os::setLocale(LC_ALL, mixed.c_str()));
    EXPECT_TRUE(os::localeName(LC_CTYPE) == own && os::localeName(LC_COLLATE) == "C");

    std::thread{[] {  // which may end with a locale of its own
        os::threadLocaleMode(os::perThreadLocale);
        EXPECT_TRUE(setOther(LC_ALL));
    }}
        .join();

    EXPECT_EQ(os::threadLocaleMode(os::processLocale), os::perThreadLocale);
    EXPECT_EQ(os::threadLocaleMode(0), os::processLocale);
    EXPECT_EQ(os::localeName(LC_ALL), process);
}

TEST(Locale, TheFormatterGoesByTheThreadsOwn) {
    os::threadLocaleMode(os::perThreadLocale);
    bool const german = os::setLocale(LC_NUMERIC, "German_Germany.1252") || os::setLocale(LC_NUMERIC, "de_DE.UTF-8");
    std::wstring const own = stringPrintf(L"%.1f %*d", 1.5, 3, 7);
    os::threadLocaleMode(os::processLocale);
    EXPECT_EQ(stringPrintf(L"%.1f %*d", 1.5, 3, 7), L"1.5   7");
    if (!german) GTEST_SKIP() << "no locale with a comma is installed";
    EXPECT_EQ(own, L"1,5   7");
}

TEST(Locale, UnknownNamesAndCategoriesChangeNothing) {
    for (int const mode : {os::processLocale, os::perThreadLocale}) {
        os::threadLocaleMode(mode);
        std::string const before = os::localeName(LC_ALL);
        EXPECT_FALSE(os::setLocale(LC_ALL, "no such locale"));
        EXPECT_FALSE(os::setLocale(99, "C"));
        EXPECT_FALSE(os::setLocale(-1, ""));
        EXPECT_EQ(os::localeName(99), "");
        EXPECT_EQ(os::localeName(LC_ALL), before);
    }
    os::threadLocaleMode(os::processLocale);
}

TEST(Locale, CollationLeavesErrnoAlone) {
    errno = 0;
    EXPECT_TRUE(os::collate(L"a", L"b") < 0 && os::collate(L"b", L"a") > 0 && os::collate(L"a", L"a") == 0);
    EXPECT_EQ(errno, 0);
}

}
