#include "orn/os/Uuid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace os = ORN::os;

namespace {

TEST(Uuid, ParsesFieldByFieldAndOnlyItsForm) {
    os::Uuid uuid{};
    ASSERT_EQ(os::parseUuid(L"01234567-89ab-CDEF-fedc-ba9876543210", uuid), 0);
    EXPECT_EQ(uuid.data1, 0x01234567u);
    EXPECT_EQ(uuid.data2, 0x89ABu);
    EXPECT_EQ(uuid.data3, 0xCDEFu);
    std::uint8_t const rest[] = {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
    EXPECT_TRUE(std::equal(std::begin(rest), std::end(rest), uuid.data4));

    os::Uuid const before = uuid;
    for (wchar_t const* text :
         {L"", L"0", L"01234567-89ab-CDEF-fedc-ba987654321", L"01234567-89ab-CDEF-fedc-ba98765432100"}) {
        EXPECT_EQ(os::parseUuid(text, uuid), os::uuidInvalidText);
    }
    EXPECT_EQ(std::memcmp(&before, &uuid, sizeof uuid), 0);
}

TEST(Uuid, NewOnesAreOfTheRandomKind) {
    os::Uuid uuid{};
    ASSERT_EQ(os::createUuid(uuid), 0);
    EXPECT_EQ(uuid.data3 >> 12, 4);       // the version
    EXPECT_EQ(uuid.data4[0] >> 6, 0b10);  // the variant
}

TEST(Uuid, OrdersFieldsAsUnsignedNumbersAndNotAsMemory) {
    // Each is less than the next.
    os::Uuid const ascending[] = {
        {0, 0, 0, {0}},           {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}},
        {0, 0, 0, {0, 0x80}},     {0, 0, 0, {1}},
        {0, 0, 0, {0xFF}},        {0, 0, 1, {0}},
        {0, 0, 0x0100, {0}},      {0, 0, 0x8000, {0}},
        {0, 1, 0, {0}},           {0, 0x0100, 0, {0}},
        {0, 0xFFFF, 0xFFFF, {0}}, {1, 0, 0, {0}},
        {0x00000100, 0, 0, {0}},  {0x7FFFFFFF, 0, 0, {0}},
        {0x80000000, 0, 0, {0}},  {0xFFFFFFFF, 0, 0, {0}},
    };
    LONG status = -1;
    for (auto const& a : ascending) {
        for (auto const& b : ascending) {
            EXPECT_EQ(os::compareUuids(a, b, status), &a < &b   ? -1
                                                      : &a > &b ? 1
                                                                : 0)
                << &a - ascending << ' ' << &b - ascending;
            EXPECT_EQ(status, 0);
        }
        EXPECT_EQ(os::uuidIsNil(a, status), &a == ascending);
    }
}

}
