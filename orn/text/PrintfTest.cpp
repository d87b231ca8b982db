#include "orn/text/Printf.h"

#include "orn/text/Encoding.h"
#include "tests/support/Cases.h"

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

std::wstring formatted(wchar_t const* format, std::wstring const& kind, std::wstring const& argument) {
    std::string const narrow = utf8(argument);
    if (kind == L"wide") return stringPrintf(format, argument.c_str());
    if (kind == L"narrow") return stringPrintf(format, narrow.c_str());
    if (kind == L"none") return stringPrintf(format, nullptr);
    if (kind == L"character") return stringPrintf(format, static_cast<int>(argument[0]));
    if (kind == L"double") return stringPrintf(format, std::strtod(narrow.c_str(), nullptr));
    std::int64_t const integer = std::stoll(argument);
    return kind == L"int"       ? stringPrintf(format, static_cast<int>(integer))
           : kind == L"pointer" ? stringPrintf(format, reinterpret_cast<void*>(integer))
                                : stringPrintf(format, integer);
}

TEST(Printf, EachConversion) {
    for (auto const& [format, kind, argument, text] : Cases{"orn/text/PrintfTest.txt"}.of<4>("formats"))
        EXPECT_EQ(formatted(format.c_str(), kind, argument), text) << format;
}

TEST(Printf, ArgumentsInARow) {
    EXPECT_EQ(stringPrintf(L"%lld %d %.1f %s", std::numeric_limits<std::int64_t>::min(), 3, 2.5, L"four"),
              L"-9223372036854775808 3 2.5 four");
    EXPECT_EQ(stringPrintf(L"[%*d|%*d|%.*d|%.*d]", 5, 3, -5, 3, 3, 7, -1, 7), L"[    3|3    |007|7]");
    EXPECT_EQ(stringPrintf(L"%*.*f|%d", 10, 2, 3.14159, 1), L"      3.14|1");
    // A precision bounds what is read, too.
    EXPECT_EQ(stringPrintf(L"%.3hs%.2s", std::array{'a', 'b', 'c'}.data(), std::array{L'd', L'e'}.data()), L"abcde");
}

#if defined(__linux__)
// On Windows the runtime reads them in the thread's locale.
TEST(Printf, NarrowTextsAreReadInTheCodePage) {
    for (char const* text : {"\xC3\xA9-", "\xF0\x9F\x98\x80", "\xC3-\xFF", "\x81\x30\x81\x30\xD6\xD0"})
        EXPECT_EQ(stringPrintf(L"%hs%C", text, 'x'), getWCS(text) + L'x');
}
#endif

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
