#include "orn/geometry/Matrix.h"

#include "orn/foundation/Error.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

template <int N>
std::wstring written(Matrix<N> const& m) {
    std::wostringstream os;
    os << m;
    return os.str();
}

TEST(Matrix, WritesRowsBetweenBrackets) {
    double const one[1][1] = {{2.5}};
    EXPECT_EQ(written(Matrix<1>{one}), L"[2.5]");
    EXPECT_EQ(written(Matrix<2>{}), L"[1,0/0,1]");
    double const three[3][3] = {{1, -2, 3}, {4, 5.5, 6}, {7, 8, 9e20}};
    EXPECT_EQ(written(Matrix<3>{three}), L"[1,-2,3/4,5.5,6/7,8,9e+20]");
    EXPECT_EQ(written(Matrix<4>{}), L"[1,0,0,0/0,1,0,0/0,0,1,0/0,0,0,1]");
}

TEST(Matrix, DeterminantOfOrderFourIsNotImplemented) { EXPECT_THROW(Matrix<4>{}.determinant(), ORN::NotImplemented); }

}
