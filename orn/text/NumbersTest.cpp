#include "orn/text/Numbers.h"

#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <optional>
#include <random>
#include <tuple>

using namespace ORN;

namespace {

std::optional<LONG> longOf(std::wstring const& text) {
    LONG value = 77;
    if (isLong(&value, text.data(), text.size())) return value;
    EXPECT_EQ(value, 77) << text;  // a failure writes nothing
    return std::nullopt;
}

std::optional<double> doubleOf(std::wstring const& text) {
    double value = 77;
    if (isDouble(&value, text.data(), text.size())) return value;
    EXPECT_EQ(value, 77) << text;
    return std::nullopt;
}

TEST(Numbers, AnIntegerIsTheWholeText) {
    EXPECT_EQ(longOf(L" \t +0000000000000000000012"), 12);
    EXPECT_EQ(longOf(L"  -2147483648"), -2147483647 - 1);
    EXPECT_EQ(longOf(L"2147483647"), 2147483647);
    for (auto const* text : {L"", L"+", L"2147483648", L"-2147483649", L"12 ", L"1.", L"\u0661"})
        EXPECT_EQ(longOf(text), std::nullopt) << text;
    LONG value = 0;
    EXPECT_TRUE(isLong(&value, L"12345", 3));
    EXPECT_EQ(value, 123);
}

TEST(Numbers, ADecimalIsTheWholeText) {
    // With at most 15 digits and a power of ten up to 15 there is one rounding, so that the result is the nearest double.
    // clang-format off
    std::pair<wchar_t const*, double> const good[] = {
        {L"1.5e3", 1500}, {L"1.5D3", 1500}, {L".5", 0.5}, {L"5.", 5}, {L"1e 5", 100000}, {L" \t-0.1", -0.1}, {L"0e309", 0},
        {L"+3.14159265358979", 3.14159265358979}, {L"0.000000000000001", 1e-15}, {L"123456789.012345", 123456789.012345},
    };
    // clang-format on
    for (auto const& [text, value] : good) EXPECT_EQ(doubleOf(text), value) << text;
    for (auto const* text : {L"", L".", L".e5", L"1e", L"1e5 ", L"1.2.3", L"1,5", L"0x10", L"inf", L"1e1.5"})
        EXPECT_EQ(doubleOf(text), std::nullopt) << text;
    EXPECT_TRUE(std::signbit(*doubleOf(L"-0.0")));
    double value = 0;
    EXPECT_TRUE(isDouble(&value, L"1.25e1x", 4));
    EXPECT_EQ(value, 1.25);
}

TEST(Numbers, TheEndsOfTheRange) {
    double const largest = std::numeric_limits<double>::max();
    for (auto const* text : {L"1.7976931348623157e308", L"17976931348623157e292", L"0.00017976931348623157e312",
                             L"1.79769313486231570814e308", L"17976931348623157000000e286"})
        EXPECT_EQ(doubleOf(text), largest) << text;
    EXPECT_EQ(doubleOf(L"-1.7976931348623157e308"), -largest);
    for (auto const* text : {L"1.7976931348623158e308", L"-1.7976931348623158e308", L"1.8e308", L"9e308", L"1e309",
                             L"0.1e310", L"1e310", L"0e310", L"1e2147483647", L"99e2147483647"})
        EXPECT_EQ(doubleOf(text), std::nullopt) << text;
    EXPECT_EQ(doubleOf(std::wstring(309, L'9')), std::nullopt);
    EXPECT_TRUE(doubleOf(std::wstring(309, L'1')));

    for (auto const* text :
         {L"1e-310", L"9.99e-310", L"1e-400", L"-1e-400", L"4.9e-324", L"1e-2147483648", L"-0.1e-2147483648"}) {
        auto const value = doubleOf(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*value), 0u) << text;
    }
}

// ---- The nearest double, and the shortest text

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

/// What is read, where the whole text has to be a number.
double nearest(std::wstring const& text) {
    DoubleRead const read = readDouble(text);
    EXPECT_TRUE(read && read.length == text.size()) << text;
    return read.value;
}

TEST(Numbers, WhatIsWrittenReadsBackAsTheSameDouble) {
    double const infinity = std::numeric_limits<double>::infinity();
    std::vector<double> values{std::numeric_limits<double>::max(), infinity};
    for (int power = -1074; power < 1024; ++power)
        for (double const value :
             {std::ldexp(1.0, power), std::nextafter(std::ldexp(1.0, power), 0), std::ldexp(0.7, power)})
            values.push_back(value);
    for (double const size : values)
        for (double const value : {size, -size}) {
            wchar_t room[doubleRoom];
            char narrow[doubleRoom];
            std::wstring const text{writeDouble(room, value)};
            EXPECT_EQ(bitsOf(readDouble(text).value), bitsOf(value)) << text;
            EXPECT_EQ(readDouble(text).length, text.size());
            EXPECT_EQ(getWCS(std::string{writeDouble(narrow, value)}), text);
        }
    wchar_t room[8];
    EXPECT_TRUE(std::isnan(readDouble(writeDouble(room, std::nan(""))).value));
}

TEST(Numbers, TheShortestTextAndAFixedNumberOfDigits) {
    // clang-format off
    std::tuple<double, wchar_t const*, wchar_t const*> const cases[] = {
        {0, L"0", L"0.000"}, {-0.0, L"-0", L"-0.000"}, {0.1, L"0.1", L"0.100"}, {1e22, L"1e+22", L"10000000000000000000000.000"},
        {123456789, L"123456789", L"123456789.000"}, {5e-324, L"5e-324", L"0.000"}, {1.0 / 3, L"0.3333333333333333", L"0.333"},
        {0.0625, L"0.0625", L"0.062"}, {0.1875, L"0.1875", L"0.188"}, {1e-7, L"1e-07", L"0.000"}, {-2.5, L"-2.5", L"-2.500"},
        {9007199254740992.0, L"9007199254740992", L"9007199254740992.000"}, {9.9999, L"9.9999", L"10.000"},
    };
    // clang-format on
    wchar_t room[400];
    char narrow[400];
    for (auto const& [value, shortest, three] : cases) {
        EXPECT_EQ(writeDouble(room, value), shortest);
        EXPECT_EQ(writeDouble(room, value, 3), three);
        EXPECT_EQ(getWCS(std::string{writeDouble(narrow, value, 3)}), three);
    }
    EXPECT_EQ(writeDouble(room, 2.5, 0), L"2");
    EXPECT_EQ(writeDouble(room, 2.5, -1), L"2");
    EXPECT_EQ(writeDouble(room, -std::numeric_limits<double>::max(), 1).size(), 312u);

    // Exactly the room, and one unit less.
    double const longest = -2.2250738585072014e-308;
    EXPECT_EQ(writeDouble(std::span{room, doubleRoom}, longest), L"-2.2250738585072014e-308");
    EXPECT_EQ(writeDouble(std::span{room, doubleRoom - 1}, longest), L"");
    EXPECT_EQ(writeDouble(std::span{narrow, 4}, 1.5, 2), "1.50");
    EXPECT_EQ(writeDouble(std::span{narrow, 3}, 1.5, 2) == "" && writeDouble(std::span{room, 0}, 1).empty(), true);
}

TEST(Numbers, TiesGoToEvenWhereverThePointStands) {
    // The conversion of integers is the processor's own; the point moves, and the exponent makes up for it.
    std::mt19937_64 random{6};
    for (int n = 0; n < 20000; ++n) {
        std::uint64_t const odd = (random() >> (10 - n % 11)) | 1, tie = odd << (n % 3);
        double const value = static_cast<double>(tie), next = std::nextafter(value, INFINITY);
        std::wstring const digits = std::to_wstring(tie), zeros(20 + random() % 900, L'0');
        std::size_t const point = random() % (digits.size() + 1);
        auto const power = [](std::size_t size) { return std::to_wstring(size); };
        EXPECT_EQ(nearest(L" +" + digits), value);
        EXPECT_EQ(
            nearest(L"-" + digits.substr(0, point) + L'.' + digits.substr(point) + L"e" + power(digits.size() - point)),
            -value);
        EXPECT_EQ(nearest(L"0." + zeros + digits + L"D+" + power(digits.size() + zeros.size())), value) << digits;
        EXPECT_EQ(nearest(digits + zeros + L"e-" + power(zeros.size())), value) << digits;
        // A digit far behind a tie decides it.
        bool const isTie = value < 18e18 && static_cast<std::uint64_t>(value) < tie &&
                           tie - static_cast<std::uint64_t>(value) == static_cast<std::uint64_t>(next) - tie;
        EXPECT_EQ(nearest(digits + L"." + zeros + L"1"), isTie ? next : value) << digits;
    }
}

TEST(Numbers, TheLongestTieGoesToEven) {
    // Halfway between the largest subnormal and the smallest normal: 767 digits, the half of a number that can be written.
    wchar_t room[1100];
    std::wstring tie{writeDouble(room, 0x1.fffffffffffffp-1022, 1074)};
    int rest = 0;
    for (wchar_t& digit : tie)
        if (digit != L'.') {
            rest = rest % 2 * 10 + (digit - L'0');
            digit = static_cast<wchar_t>(L'0' + rest / 2);
        }
    EXPECT_EQ(nearest(tie + L"5"), 0x1p-1022);
    EXPECT_EQ(nearest(tie + L"4" + std::wstring(100, L'9')), 0x0.fffffffffffffp-1022);
}

TEST(Numbers, TheEndsOfTheRangeAreTold) {
    double const largest = std::numeric_limits<double>::max(), infinity = std::numeric_limits<double>::infinity();
    double const smallest = std::numeric_limits<double>::denorm_min();
    // The point between the largest double and what would be the next one; zeros hide its last digits.
    std::wstring const top =
        L"17976931348623158079372897140530341507993413271003782693617377898044496829276475094664901797758720709633"
        L"02864166928879109465555478519404026306574886715058206819089020007083836762738548458177115317644757302700"
        L"69855571366959622842914819860834936475292719074168444365510704342711559699508093042880177904174497792";
    std::wstring const below(top.substr(0, top.size() - 1) + L"1" + std::wstring(900, L'9'));
    using enum DoubleRead::State;
    std::tuple<std::wstring, double, DoubleRead::State> const cases[] = {
        {top, infinity, overflow},
        {L"-" + top + L".0", -infinity, overflow},
        {below + L"e-900", largest, good},
        {L"1.797693134862315807e308", largest, good},
        {L"1.7976931348623158e308", largest, good},
        {L"1e309", infinity, overflow},
        {L"1e99999999999999999999", infinity, overflow},
        {L"0e99999999999999999999", 0, good},
        {L"2.2250738585072011e-308", 0x0.fffffffffffffp-1022, good},
        {L"2.4703282292062327209e-324", smallest, good},
        {L"2.4703282292062327208e-324", 0, underflow},
        {L"-1e-400", -0.0, underflow},
        {L"1e-99999999999999999999", 0, underflow},
        {L"-0e-9", -0.0, good},
        {L"Inf", infinity, good},
        {L" -INFINITY", -infinity, good}};
    for (auto const& [text, value, state] : cases) {
        DoubleRead const read = readDouble(text);
        EXPECT_EQ(bitsOf(read.value), bitsOf(value)) << text;
        EXPECT_TRUE(read.state == state && read.length == text.size()) << text;
    }
}

TEST(Numbers, ANumberIsReadAsFarAsItGoes) {
    for (wchar_t const* text : {L"", L" ", L"-", L".", L"+.e5", L"x", L"- 1", L"i", L"na", L"\n1", L"\u0661"})
        EXPECT_TRUE(readDouble(text).state == DoubleRead::none && readDouble(text).length == 0) << text;
    std::tuple<wchar_t const*, std::size_t, double> const cases[] = {
        {L"1x", 1, 1},       {L"\t 1.5.5", 5, 1.5},    {L"1,5", 1, 1},
        {L"5.", 2, 5},       {L".5-", 2, 0.5},         {L"1e", 1, 1},
        {L"1e+x", 1, 1},     {L"1e ", 1, 1},           {L"1d 2,", 4, 100},
        {L"1E-2e", 4, 0.01}, {L"0x10", 1, 0},          {L"infinite", 3, INFINITY},
        {L"12 34", 2, 12},   {L"1e5000x", 6, INFINITY}};
    for (auto const& [text, length, value] : cases) {
        DoubleRead const read = readDouble(text);
        EXPECT_TRUE(read.length == length && read.value == value) << text << ' ' << read.length;
        EXPECT_NE(read.state, DoubleRead::none) << text;
    }
}

}
