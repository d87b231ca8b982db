#include "orn/text/CharacterClass.h"

#include <gtest/gtest.h>

namespace {

// The classes of a code point by their initials: alpha, digit, alnum (n), space, print, graph, punct (u), ascii (i).
std::string classesOf(unsigned int value) {
    CodePoint const c = CodePoint::codePoint(value);
    struct {
        char initial;
        bool (*contains)(CodePoint) noexcept;
    } const classes[] = {{'a', isUalpha}, {'d', isUdigit}, {'n', isUalnum}, {'s', isUspace},
                         {'p', isUprint}, {'g', isUgraph}, {'u', isUpunct}, {'i', isUascii}};
    std::string result;
    for (auto const& [initial, contains] : classes)
        if (contains(c)) result += initial;
    return result;
}

TEST(CharacterClass, EachCategoryIsInItsClasses) {
    struct {
        unsigned int value;
        int category;
        char const* classes;
    } const cases[] = {
        {0x0041, 1, "anpgi"}, {0x0061, 2, "anpgi"}, {0x01C5, 3, "anpg"},  {0x0300, 4, "pg"},    {0x0903, 5, "pg"},
        {0x0488, 6, "pg"},    {0x0030, 7, "dnpgi"}, {0x2160, 8, "dnpg"},  {0x00B2, 9, "dnpg"},  {0x0020, 10, "spi"},
        {0x00A0, 10, "sp"},   {0x3000, 10, "sp"},   {0x2028, 11, "sp"},   {0x2029, 12, "sp"},   {0x0007, 13, "i"},
        {0x0008, 13, "i"},    {0x0009, 13, "si"},   {0x000D, 13, "si"},   {0x000E, 13, "i"},    {0x007F, 13, "i"},
        {0x0085, 13, ""},     {0x00AD, 14, ""},     {0xFEFF, 14, "sp"},   {0xD800, 15, ""},     {0xDFFF, 15, ""},
        {0xE000, 16, ""},     {0x10FFFD, 16, ""},   {0x02B0, 18, "anpg"}, {0x05D0, 19, "anpg"}, {0x20000, 19, "anpg"},
        {0x005F, 20, "pgui"}, {0x2014, 21, "pgu"},  {0x0028, 22, "pgui"}, {0x0029, 23, "pgui"}, {0x00AB, 24, "pgu"},
        {0x00BB, 25, "pgu"},  {0x0021, 26, "pgui"}, {0x002B, 27, "pgi"},  {0x20AC, 28, "pg"},   {0x005E, 29, "pgi"},
        {0x00A9, 30, "pg"},   {0x0510, 1, "anpg"},  {0x0514, 0, ""},      {0x0378, 0, ""},      {0xFFFF, 0, ""},
        {0x10FFFF, 0, ""},    {0x110000, 0, ""},    {0xFFFFFFFF, 0, ""},  {0x100041, 16, ""},   {0x110041, 0, ""},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(unicodeClass(CodePoint::codePoint(c.value)), c.category) << std::hex << c.value;
        EXPECT_EQ(classesOf(c.value), c.classes) << std::hex << c.value;
    }
}

}
