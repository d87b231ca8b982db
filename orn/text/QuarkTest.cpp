#include "orn/diagnosis/DebugStream.h"
#include "orn/text/Quark.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <thread>
#include <unordered_set>

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

TEST(Quark, CollatesTotallyByTheLocale) {
    // The C locale collates by code units.
    std::string const former = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    QuarkCollatesLess const less;
    std::vector<Quark> quarks{nullQuark};
    for (wchar_t const* text : {L"", L"A", L"AB", L"B", L"a", L"a b", L"ab", L"\u00e4", L"\xfb01"})
        quarks.push_back(Quark::create(text));
    for (std::size_t i = 0; i < quarks.size(); ++i)
        for (std::size_t j = 0; j < quarks.size(); ++j) EXPECT_EQ(less(quarks[i], quarks[j]), i < j) << i << ' ' << j;
    // Languages put small letters first, and overlook soft hyphens: then the code units decide.
    Quark const small = quarks[5], capital = quarks[4], hyphen = Quark::create(L"a\u00ad");
    for (char const* language : {"en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "English_United States.1252"})
        EXPECT_TRUE(std::setlocale(LC_ALL, language) == nullptr ||
                    (less(small, capital) && !less(capital, small) && less(small, hyphen) != less(hyphen, small)));
    std::setlocale(LC_ALL, former.c_str());
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

TEST(QuarkTable, KeepsEveryTextWhileItGrows) {
    constexpr int texts = 20000;
    std::vector<std::wstring> given;
    std::vector<Quark> quarks;
    for (int i = 0; i < texts; ++i) {
        // Lengths from a few units to more than a block, hash and order both far from the order of insertion.
        given.push_back(std::to_wstring(i * 7919 % texts) + std::wstring(i % 5000 == 0 ? 9000 : i % 40, L'.'));
        quarks.push_back(Quark::create(given.back().c_str()));
    }
    for (int i = 0; i < texts; ++i) {
        ASSERT_EQ(quarks[i].value(), given[i]) << i;
        ASSERT_EQ(Quark::create(given[i].c_str()), quarks[i]) << i;
    }
}

TEST(QuarkTable, ThreadsThatInternTheSameTextsGetTheSameQuarks) {
    constexpr int threads = 4;
    constexpr int texts = 4000;
    std::vector<std::vector<Quark>> found(threads, std::vector<Quark>(texts));
    std::vector<std::jthread> workers;
    for (int worker = 0; worker < threads; ++worker)
        workers.emplace_back([&found, worker] {
            for (int step = 0; step < 2 * texts; ++step) {
                // Two threads go up and two go down, so that they meet on new and on known texts.
                int const i = worker % 2 == 0 ? step % texts : texts - 1 - step % texts;
                std::wstring const text = L"shared " + std::to_wstring(i);
                Quark const quark = Quark::create(text.c_str());
                if (step >= texts && quark != found[worker][i]) ADD_FAILURE() << "another quark for " << i;
                if (quark.value() != text) ADD_FAILURE() << "another text for " << i;
                found[worker][i] = quark;
            }
        });
    workers.clear();
    for (int worker = 1; worker < threads; ++worker) EXPECT_EQ(found[worker], found[0]) << worker;
}
