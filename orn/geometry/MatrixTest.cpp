#include "orn/geometry/Matrix.h"

#include "tests/support/Geometry.h"

#include <cstring>
#include <stdexcept>

namespace {

template <int N, typename Element>
Matrix<N> made(Element element) {
    double rows[N][N];
    for (int i = 0; i < N * N; ++i) rows[i / N][i % N] = element();
    return Matrix<N>{rows};
}

/// The determinant by its definition over all permutations, in more digits.
template <int N>
long double leibniz(Matrix<N> const& m, int row = 0, unsigned used = 0) {
    if (row == N) return 1.0L;
    long double sum = 0;
    int sign = 1;
    for (int j = 0; j < N; ++j) {
        if ((used >> j & 1U) != 0) continue;
        sum += sign * static_cast<long double>(m[row][j]) * leibniz(m, row + 1, used | 1U << j);
        sign = -sign;
    }
    return sum;
}

TEST(Matrix, RowsGoInAndOutInOrderAndTheLeftFactorIsAppliedFirst) {
    double const one[1][1] = {{2.5}}, rows[3][3] = {{1, -2, 3}, {4, 5.5, 6}, {7, 8, 9e20}};
    Matrix<3> const m{rows};
    double out[3][3];
    m.packToPod(out);
    EXPECT_TRUE(std::memcmp(out, rows, sizeof rows) == 0 && m[1][2] == 6 && m.transpose()[1][2] == 8);
    EXPECT_EQ(written(Matrix<1>{one}, Matrix<2>{}, m), L"[2.5][1,0/0,1][1,-2,3/4,5.5,6/7,8,9e+20]");
    double const quarterTurn[2][2] = {{0, 1}, {-1, 0}}, stretch[2][2] = {{2, 0}, {0, 3}};
    Matrix<2> const a{quarterTurn}, b{stretch};
    Matrix<2> self = a * b;
    EXPECT_EQ(written(a * b, b * a, self *= self), L"[0,3/-2,0][0,2/-3,0][-6,0/-0,-6]");
}

template <class D>
class MatrixOfOrder : public testing::Test {};
using Orders = testing::Types<Dimension<1>, Dimension<2>, Dimension<3>, Dimension<4>>;
TYPED_TEST_SUITE(MatrixOfOrder, Orders);

TYPED_TEST(MatrixOfOrder, ObeysTheLawsOfProductsAndInverses) {
    constexpr int N = TypeParam::value;
    using M = Matrix<N>;
    RandomGeometry random{1};
    int regular = 0;
    for (int round = 0; round < 500; ++round) {
        // Whole numbers, whose products and sums are exact.
        auto const whole = [&] { return random.whole(-9, 9); };
        M const a = made<N>(whole), b = made<N>(whole), c = made<N>(whole);
        expectNear(a * M{}, a, 0);
        expectNear((a * b) * c, a * (b * c), 0);
        expectNear((a * b).transpose(), b.transpose() * a.transpose(), 0);
        double const components[4] = {3, -2, 7, 5};
        Vector<N> const v{components}, moved{v, a, v};
        EXPECT_TRUE((Vector<N>{Vector<N>{v, a}, b}) == (Vector<N>{v, a * b}));
        EXPECT_TRUE((moved == Vector<N>{v, a} + v * (N == 1 || N == 4 ? 2 : 1)));

        long double const determinant = leibniz(a);
        if constexpr (N < 4) {
            EXPECT_EQ(a.determinant(), static_cast<double>(determinant));
        }
        if (determinant == 0) continue;
        ++regular;
        // Entries below 10 in size: the cofactors stay below 10^4, and so does the condition number's share.
        expectNear(a.inverse() * a, M{}, 1e-10);
        expectNear(a / a, M{}, 1e-10);
        M quotient{a};
        expectNear(quotient /= a, a / a, 0);
    }
    EXPECT_GT(regular, 400);
}

TEST(Matrix, InverseByHand) {
    // Order 1 divides through the reciprocal, which here is not the quotient.
    double const dividend[1][1] = {{5}}, divisor[1][1] = {{49}};
    EXPECT_EQ((Matrix<1>{dividend} / Matrix<1>{divisor})[0][0], 5 * (1.0 / 49));
    EXPECT_NE(5 * (1.0 / 49), 5.0 / 49);

    // Order 4 pivots on the largest element relative to its row. By size row 0 would be the pivot and the result would
    // lose all digits of the second column.
    double const rows[4][4] = {{10, 1e20, 0, 0}, {1, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Matrix<4> const inverse = Matrix<4>{rows}.inverse();
    EXPECT_TRUE(inverse[0][0] == -1e-20 && inverse[0][1] == 1 && inverse[1][0] == 1e-20);
    EXPECT_NEAR(inverse[1][1], -1e-19, 1e-34);

    double const singular[2][2] = {{1, 2}, {2, 4}}, zeros[4][4] = {};
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(std::isfinite(Matrix<2>{singular}.inverse()[i / 2][i % 2]));
    EXPECT_TRUE(std::isnan(Matrix<4>{zeros}.inverse()[2][2]));
}

TEST(Matrix, InvertsManyAsOne) {
    AnyGeometry random{2};
    std::vector<Matrix<3>> in, out(1001);
    for (int i = 0; i < 1001; ++i) in.push_back(random.matrix<3>());
    invert(in, out);
    std::vector<Matrix<3>> same = in;
    invert(same, same);
    for (std::size_t i = 0; i < in.size(); ++i)
        EXPECT_TRUE(sameBits(out[i], in[i].inverse()) && sameBits(same[i], out[i])) << i;
    EXPECT_THROW(invert(in, std::span{out}.first(7)), std::logic_error);
}

// Orders 1 and 4 add it twice, as the laws above say.
TEST(Matrix, VectorProductsAddTheTranslationOneByOne) {
    // At 2⁵³ the next number is 2 away: t added twice is lost twice, 2·t added once would not be.
    Vector<4> const big{9007199254740992.0, 0, 0, 0}, x{1, 0, 0, 0};
    EXPECT_TRUE((Vector<4>{big, Matrix<4>{}, x} == big));
}

}
