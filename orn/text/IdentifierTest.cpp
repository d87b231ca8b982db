#include "orn/text/Identifier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

TEST(Identifier, IsHandedOutInOrderOnceOnly) {
    Identifier const first;
    Identifier const second;
    EXPECT_EQ(second.toPod().value, first.toPod().value + 1);
    EXPECT_GT(first.toPod().value, 0);

    Identifier copy{first.toPod()};
    EXPECT_EQ(copy, first);
    copy = second;
    EXPECT_EQ(copy.toPod().value, second.toPod().value);

    constexpr int threads = 4;
    constexpr int each = 5000;
    std::vector<std::vector<LONG>> made(threads);
    {
        std::vector<std::jthread> workers;
        for (auto& own : made)
            workers.emplace_back([&own] {
                for (int i = 0; i < each; ++i) own.push_back(Identifier{}.toPod().value);
            });
    }
    std::set<LONG> all;
    for (auto const& own : made) {
        EXPECT_TRUE(std::ranges::is_sorted(own));
        all.insert(own.begin(), own.end());
    }
    EXPECT_EQ(all.size(), static_cast<std::size_t>(threads * each));
    EXPECT_EQ(*all.rbegin(), second.toPod().value + threads * each);
}

TEST(Identifier, WritesItsDecimalValueInAngleBrackets) {
    std::pair<LONG, wchar_t const*> const cases[] = {
        {42, L"<42>"}, {-1, L"<-1>"}, {1234567, L"<1234567>"}, {std::numeric_limits<LONG>::min(), L"<-2147483648>"}};
    for (auto const& [value, text] : cases) {
        std::wostringstream stream;
        stream << std::hex << std::showbase << Identifier{Identifier::PODTYPE{value}};
        EXPECT_EQ(stream.str(), text);
    }
}
