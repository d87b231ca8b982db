#include "orn/text/CharacterClass.h"

#include "tests/support/Cases.h"

#include <gtest/gtest.h>

namespace {

TEST(CharacterClass, EachCategoryIsInItsClasses) {
    struct {
        wchar_t initial;
        bool (*contains)(CodePoint) noexcept;
    } const classes[] = {{L'a', isUalpha}, {L'd', isUdigit}, {L'n', isUalnum}, {L's', isUspace},
                         {L'p', isUprint}, {L'g', isUgraph}, {L'u', isUpunct}, {L'i', isUascii}};
    for (auto const& [value, category, initials] : Cases{"orn/text/CharacterClassTest.txt"}.of<3>("classes")) {
        CodePoint const c = CodePoint::codePoint(static_cast<unsigned int>(std::stoul(value, nullptr, 16)));
        std::wstring found;
        for (auto const& [initial, contains] : classes)
            if (contains(c)) found += initial;
        EXPECT_EQ(found, initials) << value;
        EXPECT_EQ(std::to_wstring(unicodeClass(c)), category) << value;
    }
}

}
