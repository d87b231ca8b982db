#include "orn/os/Uuid.h"

#include <gtest/gtest.h>

#include <cstring>

namespace os = ORN::os;

namespace {

// The order, field by field, is held above the seam.
TEST(Uuid, IsParsedInItsOneFormMadeAtRandomAndCompared) {
    os::Uuid uuid{}, made{};
    ASSERT_EQ(os::parseUuid(L"01234567-89ab-CDEF-fedc-ba9876543210", uuid), 0);
    EXPECT_TRUE(uuid.data1 == 0x01234567 && uuid.data2 == 0x89AB && uuid.data3 == 0xCDEF);
    EXPECT_EQ(std::memcmp(uuid.data4, "\xFE\xDC\xBA\x98\x76\x54\x32\x10", 8), 0);
    os::Uuid const before = uuid;
    for (wchar_t const* text :
         {L"", L"0", L"01234567-89ab-CDEF-fedc-ba987654321", L"01234567-89ab-CDEF-fedc-ba98765432100"})
        EXPECT_EQ(os::parseUuid(text, uuid), os::uuidInvalidText);
    EXPECT_EQ(std::memcmp(&before, &uuid, sizeof uuid), 0);

    ASSERT_EQ(os::createUuid(made), 0);
    EXPECT_EQ(made.data3 >> 12, 4);       // the version
    EXPECT_EQ(made.data4[0] >> 6, 0b10);  // the variant
    LONG status = -1;
    EXPECT_EQ(os::compareUuids(os::Uuid{}, made, status), -1);
    EXPECT_EQ(os::compareUuids(made, os::Uuid{}, status), 1);
    EXPECT_TRUE(os::compareUuids(made, made, status) == 0 && status == 0);
    EXPECT_TRUE(os::uuidIsNil(os::Uuid{}, status) && !os::uuidIsNil(made, status));
}

}
