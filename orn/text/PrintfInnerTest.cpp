#include "orn/text/Printf.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

TEST(PrintfInner, WhatTheRuntimeCannotFormComesBackAsTheFormat) {
    faults::Refuse const refuse{"_vsnwprintf"};
    EXPECT_EQ(stringPrintf(L"%d units", 5), L"%d units");
    EXPECT_EQ(refuse.refusals(), 1);
}

TEST(PrintfInner, ShortTextsTakeOneBlockAndFailuresLeakNothing) {
    std::wstring const name(100, L'n'), expected = L"5 " + name + L" 0.500 7";
    std::wstring formatted;
    {
        faults::AllocationFails const second{1};
        EXPECT_NO_THROW(formatted = stringPrintf(L"%d %s %.3f %zu", 5, name.c_str(), 0.5, std::size_t{7}));
    }
    EXPECT_EQ(formatted, expected);

    std::wstring const text(5000, L'x');
    std::wstring result;
    // Buffers of 2048, 4096, 8192 units, and the text.
    EXPECT_GE(faults::failEveryAllocation([&] { result = stringPrintf(L"<%s>", text.c_str()); }), 3);
    EXPECT_EQ(result, L"<" + text + L">");
}

}
