// Bare strings that are thrown inside the library and caught out here, in another module.
#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/UniformTransform.h"

#include <gtest/gtest.h>

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
