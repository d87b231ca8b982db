#include "orn/text/CharacterTable.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

TEST(CharacterTable, HoldsTheCategoriesOfTheUnicodeCharacterDatabase) {
    std::map<std::string, unsigned char> const numbers = {
        {"Lu", 1},  {"Ll", 2},  {"Lt", 3},  {"Mn", 4},  {"Mc", 5},  {"Me", 6},  {"Nd", 7},  {"Nl", 8},
        {"No", 9},  {"Zs", 10}, {"Zl", 11}, {"Zp", 12}, {"Cc", 13}, {"Cf", 14}, {"Cs", 15}, {"Co", 16},
        {"Lm", 18}, {"Lo", 19}, {"Pc", 20}, {"Pd", 21}, {"Ps", 22}, {"Pe", 23}, {"Pi", 24}, {"Pf", 25},
        {"Po", 26}, {"Sm", 27}, {"Sc", 28}, {"Sk", 29}, {"So", 30}};
    std::vector<unsigned char> expected(0x110000);
    std::ifstream file{ORN_CATEGORIES};
    ASSERT_TRUE(file) << ORN_CATEGORIES;
    std::set<std::string> met;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::string range, semicolon, category;
        std::istringstream{line} >> range >> semicolon >> category;
        std::size_t digits = 0;
        unsigned long const first = std::stoul(range, &digits, 16);
        unsigned long const last = digits == range.size() ? first : std::stoul(range.substr(digits + 2), nullptr, 16);
        for (unsigned long c = first; c <= last; ++c) expected.at(c) = numbers.at(category);
        met.insert(category);
    }
    EXPECT_EQ(met.size(), numbers.size());
    for (unsigned int c = 0; c < expected.size(); ++c)
        ASSERT_EQ(ORN::characterTable[c >> 8][c & 0xFF], expected[c]) << std::hex << c;
}

TEST(CharacterTable, SharesEqualPages) {
    std::set<unsigned char const*> const pages{std::begin(ORN::characterTable), std::end(ORN::characterTable)};
    std::set<std::string> contents;
    for (unsigned char const* const page : pages) contents.emplace(reinterpret_cast<char const*>(page), 256);
    EXPECT_EQ(pages.size(), 85u);
    EXPECT_EQ(contents.size(), 85u);
}

}
