#include "orn/platform/UUID.h"

#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>

using ORN::UUID;

namespace {

wchar_t const* const lower = L"00c04fd4-30c8-11d1-80b4-0a9f5e6b7c8d";
wchar_t const* const upper = L"00C04FD4-30C8-11D1-80B4-0A9F5E6B7C8D";

TEST(UUID, TextGoesIntoFieldsAndComesBackInUpperCase) {
    UUID::PODTYPE const pod = UUID{lower}.toPod();
    EXPECT_TRUE(pod.Data1 == 0x00C04FD4 && pod.Data2 == 0x30C8 && pod.Data3 == 0x11D1);
    EXPECT_EQ(std::memcmp(pod.Data4, "\x80\xB4\x0A\x9F\x5E\x6B\x7C\x8D", 8), 0);
    EXPECT_TRUE(UUID{lower}.toString() == upper && UUID{pod}.toString() == upper);
    UUID const nil;
    EXPECT_TRUE(nil.isNull() && nil == UUID{nil.toString()});
    EXPECT_EQ(nil.toString(), L"00000000-0000-0000-0000-000000000000");
    EXPECT_FALSE(UUID{L"00000000-0000-0000-0000-000000000001"}.isNull());
    std::wostringstream stream;
    stream << UUID{lower};
    EXPECT_EQ(stream.str(), upper);
    UUID assigned;
    assigned = UUID{pod};
    EXPECT_EQ(assigned, UUID{upper});
}

TEST(UUID, RefusesEveryOtherTextWithTheCatalogues) {
    std::wstring const good = upper;
    for (std::wstring const& text :
         {std::wstring{}, L"{" + good + L"}", good + L" ", good.substr(1), good + std::wstring(1, L'\0')}) {
        EXPECT_FALSE(UUID::valid(text));
        EXPECT_EQ(thrown([&] { UUID{text}; }), L"OrnError: " + stringPrintf(ornMsg(218).c_str(), text.c_str()));
    }
    // One wrong unit at each place; those beside the digits in the tables of characters, and beyond them.
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (int const unit : {0x2F, 0x3A, 0x40, 0x47, 0x60, 0x67, 0x20, 0, 0x0130, 0x0661, 0xFF21, 0xD800}) {
            std::wstring text = good;
            text[place] = static_cast<wchar_t>(unit);
            EXPECT_FALSE(UUID::valid(text)) << place << ' ' << unit;
        }
    }
    EXPECT_TRUE(UUID::valid(good) && UUID::valid(lower));
}

TEST(UUID, NewOnesAreRandomAndDiffer) {
    std::set<UUID> made;
    for (int i = 0; i < 1000; ++i) {
        UUID::PODTYPE const pod = made.insert(UUID::create()).first->toPod();
        EXPECT_TRUE(pod.Data3 >> 12 == 4 && pod.Data4[0] >> 6 == 0b10);  // the version and the variant
    }
    EXPECT_EQ(made.size(), 1000u);
}

TEST(UUID, IsOrderedFieldByField) {
    // The order that the fields' numbers have, which is not that of their bytes in memory.
    wchar_t const* const ascending[] = {
        L"00000000-0000-0000-0000-000000000000", L"00000000-0000-0000-0000-000000000001",
        L"00000000-0000-0000-0000-000000000100", L"00000000-0000-0000-8000-000000000000",
        L"00000000-0000-0001-0000-000000000000", L"00000000-0000-0100-0000-000000000000",
        L"00000000-0001-0000-0000-000000000000", L"00000000-FF00-0000-0000-000000000000",
        L"00000001-0000-0000-0000-000000000000", L"00000100-0000-0000-0000-000000000000",
        L"80000000-0000-0000-0000-000000000000", L"FFFFFFFF-0000-0000-0000-000000000000",
    };
    std::less<UUID> const less;
    for (auto const& a : ascending) {
        for (auto const& b : ascending) {
            EXPECT_EQ(less(UUID{a}, UUID{b}), &a < &b);
            EXPECT_EQ(UUID{a} <=> UUID{b}, &a <=> &b);
            EXPECT_TRUE((UUID{a} == UUID{b}) == (&a == &b) && (UUID{a} != UUID{b}) == (&a != &b));
        }
    }
    EXPECT_EQ(std::hash<UUID>{}(UUID{lower}), std::hash<UUID>{}(UUID{upper}));
}

TEST(UUID, HashesSpreadCountersInEveryField) {
    // Of 4096 values that differ in one field, the low twelve bits of a good hash miss about 1/e of the 4096 buckets.
    for (int field = 0; field < 4; ++field) {
        std::set<std::size_t> buckets;
        for (unsigned int i = 0; i < 4096; ++i) {
            auto const in = [=](int wanted) { return static_cast<std::uint16_t>(field == wanted ? i : 0); };
            UUID::PODTYPE pod{static_cast<std::uint32_t>(in(0)) << 20, in(1), in(2), {}};
            pod.Data4[6] = static_cast<std::uint8_t>(in(3) >> 8);
            pod.Data4[7] = static_cast<std::uint8_t>(in(3));
            buckets.insert(std::hash<UUID>{}(UUID{pod}) & 0xFFF);
        }
        EXPECT_GT(buckets.size(), 2400u) << field;
    }
}

}
