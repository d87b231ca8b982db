#include "orn/diagnosis/DebugStream.h"
#include "orn/text/Quark.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <unordered_set>

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
    Quark const abc = Quark::create(L"abc"), empty = Quark::create(L"");
    for (wchar_t const* other : {L"abd", L"ab", L"abcd", L""}) EXPECT_NE(Quark::create(other), abc) << other;
    std::wstring const elsewhere = L"abc";
    EXPECT_EQ(Quark::create(elsewhere.c_str()), abc);
    EXPECT_EQ(Quark::create(std::wstring_view{L"xabcx"}.substr(1, 3)), abc);
    std::wstring const longer(100, L'l');
    EXPECT_TRUE(Quark::create(longer) == Quark::create(longer.c_str()) && Quark::create(std::wstring_view{}) == empty);
    EXPECT_EQ(Quark::create(abc.value()), abc);
    EXPECT_STREQ(abc.value(), L"abc");
    EXPECT_NE(abc.value(), elsewhere.c_str());

    // No text is not the empty text.
    EXPECT_STREQ(empty.value(), L"");
    EXPECT_TRUE(empty != nullQuark && nullQuark.value() == nullptr && Quark{} == nullQuark);
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

TEST(Quark, IsWrittenWithItsTextByTheDebuggingLevel) {
    auto const written = [](auto const&... values) {
        std::wostringstream os;
        (os << ... << values);
        return os.str();
    };
    for (DebugStream::DebuggingLevel level : {DebugStream::debugNothing, DebugStream::debugFailures,
                                              DebugStream::debugNormal, DebugStream::debugEverything}) {
        DebugStream::SetVerbose const verbose{level};
        DebugStream::stream() << verbose;
        for (Quark const quark : {Quark::create(L"text"), Quark::create(L""), nullQuark}) {
            std::wstring expected = written(L"Q:", static_cast<void const*>(quark.value()));
            if (level >= 2 && quark != nullQuark) expected += written(L" \"", quark.value(), L'"');
            EXPECT_EQ(written(quark, L'.'), expected + L'.') << level;
        }
    }
}
