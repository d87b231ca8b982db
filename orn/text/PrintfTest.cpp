#include "orn/text/Printf.h"

#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <array>

namespace {

// What would be read as something else does not compile.
template <typename Format, typename... Arguments>
concept Formats = requires(Format format, Arguments... arguments) {
    stringPrintf(format, 1, arguments...);
};
static_assert(Formats<wchar_t const*, wchar_t const*, double> && Formats<char const*, char*, std::nullptr_t>);
static_assert(!Formats<wchar_t const*, std::wstring> && !Formats<char const*, int, std::wstring_view const&>);

TEST(Printf, TextsAreWideUnlessSaidOtherwise) {
    for (auto const* format : {L"%s", L"%ls", L"%ws", L"%lS"})
        EXPECT_EQ(stringPrintf(format, L"text"), L"text") << format;
    for (auto const* format : {L"%S", L"%hs", L"%hS"}) EXPECT_EQ(stringPrintf(format, "text"), L"text") << format;
    for (auto const* format : {L"%c", L"%lc", L"%wc", L"%lC"}) EXPECT_EQ(stringPrintf(format, L'\u20AC'), L"\u20AC");
    for (auto const* format : {L"%C", L"%hc", L"%hC"}) EXPECT_EQ(stringPrintf(format, 'x'), L"x") << format;
    EXPECT_EQ(stringPrintf(L"[%6s|%-6s|%.2s|%06s|%3c|%-3c]%%", L"text", L"text", L"text", L"text", L'x', L'y'),
              L"[  text|text  |te|00text|  x|y  ]%");
    EXPECT_EQ(stringPrintf(L"[%.3hs|%5hs|%-5hs]", "narrow", "ab", "cd"), L"[nar|   ab|cd   ]");
    EXPECT_EQ(stringPrintf(L"%c%c", 0, L'a'), std::wstring(L"\0a", 2));
    EXPECT_EQ(stringPrintf(L"%s|%hs", static_cast<wchar_t*>(nullptr), static_cast<char*>(nullptr)), L"(null)|(null)");
    // A precision bounds what is read, too.
    EXPECT_EQ(stringPrintf(L"%.3hs%.2s", std::array{'a', 'b', 'c'}.data(), std::array{L'd', L'e'}.data()), L"abcde");
}

TEST(Printf, SurrogatesPassUnharmed) {
    wchar_t const units[] = {0xD83D, 0xDE00, L'-', 0xDE00, 0xD83D, 0};
    EXPECT_EQ(stringPrintf(L"<%s>%c", units, 0xD800), std::wstring(L"<") + units + L">" + wchar_t{0xD800});
    EXPECT_EQ(stringPrintf(L"%.1s", units), std::wstring(1, wchar_t{0xD83D}));
    EXPECT_EQ(stringPrintf((std::wstring{units} + L"%d").c_str(), 1), std::wstring{units} + L"1");
}

#if defined(__linux__)
// On Windows the runtime reads them in the thread's locale.
TEST(Printf, NarrowTextsAreReadInTheCodePage) {
    for (char const* text : {"\xC3\xA9-", "\xF0\x9F\x98\x80", "\xC3-\xFF", "\x81\x30\x81\x30\xD6\xD0"})
        EXPECT_EQ(stringPrintf(L"%hs%C", text, 'x'), getWCS(text) + L'x');
}
#endif

TEST(Printf, IntegersHaveTheWidthsOfWindows) {
    std::int64_t const big = 0x1234567890, least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(stringPrintf(L"%ld %lu %I32d", std::int32_t{-2147483647 - 1}, 0xFFFFFFFFu, -1),
              L"-2147483648 4294967295 -1");
    EXPECT_EQ(stringPrintf(L"%lld|%I64d|%jd|%zd|%td|%Id", big, big, big, big, big, big),
              L"78187493520|78187493520|78187493520|78187493520|78187493520|78187493520");
    EXPECT_EQ(stringPrintf(L"%lld %llx %d", least, least, 3), L"-9223372036854775808 8000000000000000 3");
    EXPECT_EQ(stringPrintf(L"%hd %hu %hx %hhd %hhu", 0x1FFFF, 0x1FFFF, -1, 5, 200), L"-1 65535 ffff 5 200");
    EXPECT_EQ(stringPrintf(L"%p|%20p|%-18p|", reinterpret_cast<void*>(std::uintptr_t{0xBEEF}), nullptr, nullptr),
              L"000000000000BEEF|    0000000000000000|0000000000000000  |");
    EXPECT_EQ(stringPrintf(L"[%5d|%-5d|%05d|%+d|% d|%.3d|%5.3d]", 42, 42, -42, 42, 42, 7, -7),
              L"[   42|42   |-0042|+42| 42|007| -007]");
    EXPECT_EQ(stringPrintf(L"%x %X %#x %#X %o %#o %#x %#06x", 255, 255, 255, 255, 8, 8, 0, 255),
              L"ff FF 0xff 0XFF 10 010 0 0x00ff");
    EXPECT_EQ(stringPrintf(L"[%*d|%*d|%.*d|%.*d|%.0d]", 5, 3, -5, 3, 3, 7, -1, 7, 0), L"[    3|3    |007|7|]");
}

TEST(Printf, DoublesAreRoundedDecimals) {
    EXPECT_EQ(stringPrintf(L"%f|%lf|%Lf|%F", 0.5, 0.5, 0.5, 0.5), L"0.500000|0.500000|0.500000|0.500000");
    EXPECT_EQ(stringPrintf(L"[%8.2f|%-8.2f|%08.2f|%+.1f|% .0f|%#.0f]", 1.005, 1.5, -1.5, 2.375, 0.25, 3.0),
              L"[    1.00|1.50    |-0001.50|+2.4| 0|3.]");
    EXPECT_EQ(stringPrintf(L"%g %g %G %#g %.17g", 100000.0, 0.0001, 2.5, 1.0, 0.1),
              L"100000 0.0001 2.5 1.00000 0.10000000000000001");
    EXPECT_EQ(stringPrintf(L"%.0f", 1e300).length(), 301u);
    EXPECT_EQ(stringPrintf(L"%*.*f|%d %.1f %lld %s", 10, 2, 3.14159, 1, 2.5, 3LL, L"four"), L"      3.14|1 2.5 3 four");
}

TEST(Printf, ABadFormatIsReturnedAsItStands) {
    // clang-format off
    for (auto const* format : {L"%", L"ends in %", L"%y", L"a %d b %", L"%5", L"%-", L"%.", L"%l", L"%I",
                               L"%I64", L"%ll", L"%n", L"%hn", L"%ln", L"%1$d", L"%m", L"%'d", L"%zs", L"%hf",
                               L"%ws%wd", L"%99999999999d", L"%.99999999999s", L"%s %q"})  // clang-format on
        EXPECT_EQ(stringPrintf(format, 1, 2, 3), format);
}

TEST(Printf, LengthsAroundEveryBufferSize) {
    for (std::size_t const length : {0u, 1u, 1022u, 1023u, 1024u, 1025u, 2047u, 2048u, 2049u, 5000u, 300000u}) {
        std::wstring const text(length, L'x');
        EXPECT_EQ(stringPrintf(L"%s", text.c_str()), text) << length;
        EXPECT_EQ(stringPrintf(text.c_str()), text) << length;
        EXPECT_EQ(stringPrintf(L"%d %s %.1f", 1, text.c_str(), 2.5), L"1 " + text + L" 2.5") << length;
    }
    EXPECT_EQ(stringPrintf(L"%3000d", 1), std::wstring(2999, L' ') + L"1");
    EXPECT_EQ(stringPrintf(L"%.3000f", 0.5), L"0.5" + std::wstring(2999, L'0'));
    std::wstring const literal(400, L'y');
    EXPECT_EQ(stringPrintf((literal + L"%zu%F").c_str(), std::size_t{7}, 0.5), literal + L"70.500000");
}

TEST(Printf, NarrowFormatsTakeWideArguments) {
    EXPECT_EQ(stringPrintf("%d %s %hs", 5, L"wide", "narrow"), "5 wide narrow");
    EXPECT_EQ(stringPrintf("100%"), "100%");
    EXPECT_EQ(stringPrintf(""), "");
}

}
