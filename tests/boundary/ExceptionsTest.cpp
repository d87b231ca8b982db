// Exceptions that are thrown inside the library and caught by their types out here, in another module.
#include "orn/orn.h"

#include <gtest/gtest.h>

namespace {

/// The text of what `call` throws, when it is caught as exactly this type.
template <typename Exception, typename Call>
std::string caughtAs(Call call) {
    try {
        call();
    } catch (Exception const& exception) {
        return typeid(exception) == typeid(Exception) ? exception.what() : "a class derived from it";
    } catch (...) {
        return "something else";
    }
    return "nothing";
}

TEST(Boundary, ExceptionsAreCaughtByType) {
    char buffer[1];
    EXPECT_EQ(caughtAs<ORN::OrnError>([] { throwIntCast(); }), "integer value right out of range");
    EXPECT_EQ(caughtAs<ORN::NotImplemented>([] { Matrix<4>{}.determinant(); }), "Matrix<M>::determinant");
    EXPECT_TRUE(caughtAs<WinError>([] {
                    ORN::OrnPostMessage(reinterpret_cast<HWND>(0x7FF0), 0x8000, 0, 0);
                }).ends_with("calling PostMessage"));
    EXPECT_EQ(caughtAs<std::logic_error>([&] { packTo(std::wstring{L"x"}, buffer, 0); }),
              "illegal buffer to pack wstring");
    try {
        DIBitmap{0x7FFFFFFF, 0x7FFFFFFF, 32, 0};
        FAIL() << "a bitmap beyond 32 bits was made";
    } catch (std::bad_alloc const& error) {
        EXPECT_STREQ(error.what(), "bad allocation");
    }
}

TEST(Boundary, BareStringsAreCaughtAsEveryPointerThatTheyMayBe) {
    NonUniformTransform<2> const flat;
    EXPECT_THROW(static_cast<void>(UniformTransform<2>{}.pSlice()), char*);
    EXPECT_THROW(static_cast<void>(flat.pSlice()), char*);
    EXPECT_THROW(static_cast<void>(flat.pSlice()), void*);
    try {
        static_cast<void>(flat.pSlice());
        FAIL() << "a plane affine transform was sliced";
    } catch (char const* text) {
        EXPECT_STREQ(text, "Not Implemented");
    }
}

}
