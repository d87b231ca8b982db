#include "orn/foundation/Error.h"

#include <gtest/gtest.h>

namespace {

TEST(Error, FamiliesAreCaughtByTheirBases) {
    EXPECT_THROW(throw ORN::OrnError{L"x"}, std::runtime_error);
    EXPECT_THROW(throw WinError{5}, ORN::OrnError);
    EXPECT_THROW(throw ORN::NotImplemented{L"x"}, std::logic_error);
    EXPECT_THROW(throwIntCast(), std::runtime_error);
    static_assert(!std::is_base_of_v<std::runtime_error, ORN::NotImplemented>);
    static_assert(!std::is_base_of_v<ORN::OrnError, ORN::NotImplemented>);
}

}
