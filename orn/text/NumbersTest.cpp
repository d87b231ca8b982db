#include "orn/text/Numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cwchar>
#include <optional>
#include <random>

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

TEST(Numbers, IntegersAreTheWholeTextAndTheWholeRange) {
    // clang-format off
    struct {
        wchar_t const* text;
        LONG value;
    } const good[] = {
        {L"0", 0}, {L"-0", 0}, {L"+17", 17}, {L" \t 42", 42}, {L"0000000000000000000012", 12},
        {L"  -2147483648", -2147483647 - 1}, {L"2147483647", 2147483647}, {L"-2147483639", -2147483639},
    };
    // clang-format on
    for (auto const& [text, value] : good) EXPECT_EQ(longOf(text), value) << text;

    // clang-format off
    for (auto const* text : {L"", L" ", L"\t", L"+", L"-", L" -", L"2147483648", L"-2147483649", L"2147483650",
                             L"-2147483650", L"21474836470", L"99999999999999999999", L"12 ", L"1 2", L"+-1", L"- 1",
                             L"1.", L"0x10", L"\n1", L"\u00A01", L"\u0661"})  // clang-format on
        EXPECT_EQ(longOf(text), std::nullopt) << text;

    EXPECT_EQ(longOf(std::wstring(L"1\0", 2)), std::nullopt);
    LONG value = 0;
    EXPECT_TRUE(isLong(&value, L"12345", 3));
    EXPECT_EQ(value, 123);
}

// With at most 15 digits and a power of ten up to 15 there is one rounding, so that the result is the nearest double.
TEST(Numbers, DecimalsReadAsTheNearestDouble) {
    struct {
        wchar_t const* text;
        double value;
        // clang-format off
    } const good[] = {
        {L"0", 0}, {L"1.5e3", 1500}, {L"1.5D3", 1500}, {L"1.5E+3", 1500}, {L"15d+2", 1500}, {L".5", 0.5}, {L"5.", 5},
        {L"0.", 0}, {L".0", 0}, {L"1e 5", 100000}, {L"1e\t-2", 0.01}, {L" \t-0.1", -0.1}, {L"0e309", 0},
        {L"+3.14159265358979", 3.14159265358979}, {L"000000000000000000000000012.50", 12.5},
        {L"0.000000000000001", 1e-15}, {L"0.00000000000000000000000000000000000000001e40", 0.1},
        {L"123456789.012345", 123456789.012345}, {L"1000000000000000000000000000000e-30", 1},
        {L"9007199254740993", 9007199254740992.}, {L"12345678901234567999999e-6", 12345678901234567.},
    };
    // clang-format on
    for (auto const& [text, value] : good) EXPECT_EQ(doubleOf(text), value) << text;

    std::wstring const zeros(1000, L'0');
    EXPECT_EQ(doubleOf(L"1e" + zeros + L"5"), 1e5);
    EXPECT_EQ(doubleOf(L"1e-" + zeros + L"2"), 0.01);
    EXPECT_EQ(doubleOf(L"25" + zeros + L"e-1001"), 2.5);
    EXPECT_EQ(doubleOf(L"0." + zeros + L"25e1001"), 2.5);
    EXPECT_EQ(doubleOf(L"1." + zeros + L"1"), 1.0);
    EXPECT_TRUE(std::signbit(*doubleOf(L"-0.0")));
}

TEST(Numbers, WhatIsNotADecimalThroughout) {
    // clang-format off
    for (auto const* text : {L"", L" ", L".", L"-.", L"+", L".e5", L"1e", L"1e+", L"1e ", L"1e5 ", L"1 ", L"1x", L"1..2",
                             L"1.2.3", L"1,5", L"- 1", L"--1", L"0x10", L"1f3", L"inf", L"nan", L"1e1.5",
                             L"1e2147483648", L"1e-2147483649", L"\u0661", L"1\u00A0"})  // clang-format on
        EXPECT_EQ(doubleOf(text), std::nullopt) << text;
    EXPECT_EQ(doubleOf(L"1e" + std::wstring(1000, L'9')), std::nullopt);
    EXPECT_EQ(doubleOf(L"1e-" + std::wstring(1000, L'9')), std::nullopt);
    EXPECT_EQ(doubleOf(std::wstring(L"1\0", 2)), std::nullopt);
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

    // No number of that size steps over the end when it is scaled.
    std::mt19937_64 random{3};
    for (int n = 0; n < 2000; ++n) {
        std::wstring const text = L"1.79769313486" + std::to_wstring(10000 + random() % 13157) + L"e308";
        auto const value = doubleOf(text);
        ASSERT_TRUE(value) << text;
        EXPECT_NEAR(*value / largest, std::wcstod(text.c_str(), nullptr) / largest, 1e-15) << text;
    }

    for (auto const* text :
         {L"1e-310", L"9.99e-310", L"1e-400", L"-1e-400", L"4.9e-324", L"1e-2147483648", L"-0.1e-2147483648"}) {
        auto const value = doubleOf(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*value), 0u) << text;
    }
}

// The digits gathered and scaled one rounding after the other, step by step in another language.
TEST(Numbers, RoundingsFollowTheStatedSteps) {
    struct {
        wchar_t const* text;
        double value;
    } const good[] = {{L"1e-309", 0x0.0b8157268fdafp-1022},
                      {L"1e-308", 0x0.730d67819e8d2p-1022},
                      {L"2.2250738585072014e-308", 0x0.fffffffffffffp-1022},
                      {L"1.2345678901234567e-300", 0x1.a74fe1c1e8906p-997},
                      {L"1.2345678901234567e300", 0x1.d7ee8bcbbd353p+996},
                      {L"0.00000000000000000000000000000123456", 0x1.90a33b6e7e9f7p-100},
                      {L"123456789012345678901234567890", 0x1.8ee90ff6c373ep+96},
                      {L"17976931348623159", 0x1.feef63f97d79cp+53},
                      {L"99999999999999999", 0x1.6345785d8a001p+56},
                      {L"1e22", 0x1.0f0cf064dd592p+73},
                      {L"1e23", 0x1.52d02c7e14af6p+76}};
    for (auto const& [text, value] : good) EXPECT_EQ(doubleOf(text), value) << text;
}

TEST(Numbers, EveryDoubleIsReadBackToAFewUnitsInTheLastPlace) {
    std::mt19937_64 random{4};
    for (int n = 0; n < 20000; ++n) {
        double const value = std::bit_cast<double>(random());
        if (!std::isfinite(value) || std::fabs(value) < 1e-290) continue;
        wchar_t text[40];
        std::swprintf(text, 40, L"%.16e", value);
        auto const read = doubleOf(text);
        ASSERT_TRUE(read) << text;
        EXPECT_LE(std::fabs(*read - value), 6 * (std::nextafter(std::fabs(value), INFINITY) - std::fabs(value)))
            << text;
    }
}

}
