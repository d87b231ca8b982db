#include "orn/text/Numbers.h"

#include "orn/text/Encoding.h"
#include "tests/support/Cases.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <random>

using namespace ORN;

namespace {

constexpr Cases numbers{"orn/text/NumbersTest.txt"};

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

double doubleOf(std::wstring const& text) { return std::strtod(utf8(text).c_str(), nullptr); }

// A failure writes nothing.
TEST(Numbers, AnIntegerOrADecimalIsTheWholeText) {
    for (auto const& [text, expected] : numbers.of<2>("integers")) {
        LONG value = 77;
        EXPECT_EQ(isLong(&value, text), expected != L"none") << text;
        EXPECT_EQ(std::to_wstring(value), expected == L"none" ? L"77" : expected) << text;
    }
    for (auto const& [text, expected] : numbers.of<2>("decimals")) {
        double value = 77;
        EXPECT_EQ(isDouble(&value, text.data(), text.size()), expected != L"none") << text;
        EXPECT_EQ(bitsOf(value), bitsOf(expected == L"none" ? 77 : doubleOf(expected))) << text;
    }
    LONG integer = 0;
    double number = 0;
    EXPECT_TRUE(isLong(&integer, L"12345", 3) && integer == 123);
    EXPECT_TRUE(isDouble(&number, L"1.25e1x", 4) && number == 1.25);
    // Of 309 digits the value decides.
    std::wstring const ones(309, L'1'), nines(309, L'9');
    EXPECT_TRUE(isDouble(&number, ones.data(), 309) && !isDouble(&number, nines.data(), 309));
}

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
    wchar_t room[400];
    char narrow[400];
    for (auto const& [value, shortest, three] : numbers.of<3>("written")) {
        EXPECT_EQ(writeDouble(room, doubleOf(value)), shortest);
        EXPECT_EQ(writeDouble(room, doubleOf(value), 3), three);
        EXPECT_EQ(getWCS(writeDouble(narrow, doubleOf(value), 3)), three);
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

TEST(Numbers, ANumberIsReadAsFarAsItGoes) {
    wchar_t const* const states[] = {L"none", L"good", L"overflow", L"underflow"};
    auto table = numbers.of<4>("read");
    // The point between the largest double and what would be the next one; zeros hide its last digits.
    std::wstring const top =
        L"17976931348623158079372897140530341507993413271003782693617377898044496829276475094664901797758720709633"
        L"02864166928879109465555478519404026306574886715058206819089020007083836762738548458177115317644757302700"
        L"69855571366959622842914819860834936475292719074168444365510704342711559699508093042880177904174497792";
    std::wstring const below = top.substr(0, top.size() - 1) + L"1" + std::wstring(900, L'9') + L"e-900";
    for (auto const& [text, value] :
         {std::pair{top, L"inf"}, {L"-" + top + L".0", L"-inf"}, {below, L"0x1.fffffffffffffp1023"}})
        table.push_back({text, std::to_wstring(text.size()), value, *value == L'0' ? L"good" : L"overflow"});
    for (auto const& [text, length, value, state] : table) {
        DoubleRead const read = readDouble(text);
        EXPECT_EQ(bitsOf(read.value), bitsOf(doubleOf(value))) << text;
        EXPECT_EQ(std::to_wstring(read.length) + states[read.state], length + state) << text;
    }
}

}
