#include "orn/platform/UUID.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

using ORN::UUID;

namespace {

template <typename Action>
std::wstring thrown(Action action) {
    try {
        action();
    } catch (ORN::OrnError const& error) {
        return error.wWhat();
    }
    return L"nothing";
}

TEST(UUIDInner, RefusalsAreThrownByNameAndStatus) {
    UUID const nil, one{L"00000000-0000-0000-0000-000000000001"};
    {
        faults::Refuse const refuse{"UuidCreate"};  // valid on this computer only
        EXPECT_EQ(thrown([] { UUID::create(); }), L"UuidCreate 1824");
    }
    {
        faults::Refuse const refuse{"UuidCreateNil"};
        EXPECT_EQ(thrown([] { UUID{}; }), L"UuidCreateNil 14");
    }
    {
        faults::Refuse const refuse{"UuidIsNil"};
        EXPECT_EQ(thrown([&] { (void)nil.isNull(); }), L"UuidIsNil 87");
    }
    faults::Refuse const refuse{"UuidCompare"};
    EXPECT_EQ(thrown([&] { (void)(nil == one); }), L"UuidCompare 87");
    EXPECT_EQ(thrown([&] { (void)(nil != one); }), L"UuidCompare 87");
    EXPECT_EQ(thrown([&] { std::less<UUID>{}(nil, one); }), L"UuidCompare 87");
    EXPECT_EQ(nil.toPod().Data1, 0u);
    EXPECT_EQ(refuse.refusals(), 3);
}

}
