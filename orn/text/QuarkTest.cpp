#include "orn/foundation/DebugStream.h"
#include "orn/text/Quark.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <vector>

namespace {

/// The C locale for a test, whatever the user's is: it collates by code units.
class PlainLocale {
public:
    PlainLocale() : former_{std::setlocale(LC_ALL, nullptr)} { std::setlocale(LC_ALL, "C"); }
    ~PlainLocale() { std::setlocale(LC_ALL, former_.c_str()); }

private:
    std::string former_;
};

}

TEST(Quark, EqualTextsAreOneQuark) {
    static_assert(std::is_trivially_copyable_v<Quark> && sizeof(Quark) == sizeof(void*));

    Quark const abc = Quark::create(L"abc");
    EXPECT_NE(Quark::create(L"abd"), abc);
    EXPECT_NE(Quark::create(L"ab"), abc);
    EXPECT_NE(Quark::create(L"abcd"), abc);
    std::wstring const elsewhere = L"abc";
    EXPECT_EQ(Quark::create(elsewhere.c_str()), abc);
    EXPECT_EQ(Quark::create(elsewhere.c_str()).value(), abc.value());
    EXPECT_STREQ(abc.value(), L"abc");
    EXPECT_NE(abc.value(), elsewhere.c_str());
    EXPECT_EQ(Quark::create(abc.value()), abc);
}

TEST(Quark, NoTextIsNotTheEmptyText) {
    Quark const empty = Quark::create(L"");
    EXPECT_STREQ(empty.value(), L"");
    EXPECT_NE(empty, nullQuark);
    EXPECT_EQ(nullQuark.value(), nullptr);
    EXPECT_EQ(Quark{}, nullQuark);
    Quark assigned = empty;
    assigned = nullQuark;
    EXPECT_EQ(assigned, nullQuark);
}

TEST(Quark, IsAKey) {
    std::set<Quark, QuarkLess> ordered;
    std::unordered_set<Quark> hashed;
    for (int i = 0; i < 300; ++i) {
        Quark const quark = Quark::create((L"key " + std::to_wstring(i % 100)).c_str());
        ordered.insert(quark);
        hashed.insert(quark);
    }
    EXPECT_EQ(ordered.size(), 100u);
    EXPECT_EQ(hashed.size(), 100u);
    EXPECT_TRUE(std::ranges::is_sorted(ordered, std::less<>{}, [](Quark quark) { return quark.value(); }));
    EXPECT_TRUE(QuarkLess{}(nullQuark, *ordered.begin()));
    EXPECT_FALSE(QuarkLess{}(nullQuark, nullQuark));
}

TEST(Quark, CollatesTotally) {
    PlainLocale const plain;
    wchar_t const* const ascending[] = {L"", L"A", L"AB", L"B", L"a", L"a b", L"ab", L"\u00e4", L"\xfb01"};
    QuarkCollatesLess const less;
    std::vector<Quark> quarks{nullQuark};
    for (wchar_t const* text : ascending) quarks.push_back(Quark::create(text));
    for (std::size_t i = 0; i < quarks.size(); ++i)
        for (std::size_t j = 0; j < quarks.size(); ++j) EXPECT_EQ(less(quarks[i], quarks[j]), i < j) << i << ' ' << j;
}

TEST(Quark, CollatesByTheLocale) {
    PlainLocale const plain;
    char const* const candidates[] = {"en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "English_United States.1252"};
    if (std::ranges::none_of(candidates, [](char const* name) { return std::setlocale(LC_ALL, name) != nullptr; }))
        GTEST_SKIP() << "there is no language's locale here";
    Quark const a = Quark::create(L"a"), capital = Quark::create(L"B");
    EXPECT_TRUE(QuarkCollatesLess{}(a, capital));
    EXPECT_FALSE(QuarkCollatesLess{}(capital, a));
    EXPECT_FALSE(QuarkCollatesLess{}(a, Quark::create(L"a")));
}

TEST(Quark, WritesItsPointerAndText) {
    for (Quark const quark : {Quark::create(L"some text"), Quark::create(L""), nullQuark}) {
        std::wostringstream expected, written;
        expected << L"Q:" << static_cast<void const*>(quark.value());
        if (quark != nullQuark) expected << L" \"" << quark.value() << L'"';
        written << quark << L'.';
        EXPECT_EQ(written.str(), expected.str() + L".");
    }
}

TEST(Quark, IsWrittenWithItsTextByTheDebuggingLevel) {
    Quark const quark = Quark::create(L"text");
    std::wostringstream pointer;
    pointer << L"Q:" << static_cast<void const*>(quark.value());
    for (DebugStream::DebuggingLevel level : {DebugStream::debugNothing, DebugStream::debugFailures,
                                              DebugStream::debugNormal, DebugStream::debugEverything}) {
        DebugStream::SetVerbose const verbose{level};
        DebugStream::stream() << verbose;
        std::wostringstream written;
        written << quark;
        EXPECT_EQ(written.str(), level < 2 ? pointer.str() : pointer.str() + L" \"text\"") << level;
    }
}
