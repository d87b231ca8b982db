#include "orn/geometry/Matrix.h"

#include "orn/foundation/Error.h"
#include "tests/support/VectorEquality.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

namespace {

template <int N>
std::wstring written(Matrix<N> const& m) {
    std::wostringstream os;
    os << m;
    return os.str();
}

/// Whole numbers, whose products and sums are exact.
template <int N>
Matrix<N> randomWhole(std::mt19937& random) {
    std::uniform_int_distribution<int> whole{-9, 9};
    double rows[N][N];
    for (auto& row : rows)
        for (double& element : row) element = whole(random);
    return Matrix<N>{rows};
}

template <int N>
void expectEqual(Matrix<N> const& actual, Matrix<N> const& expected) {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) EXPECT_EQ(actual[i][j], expected[i][j]) << i << ',' << j;
}

template <int N>
void expectNear(Matrix<N> const& actual, Matrix<N> const& expected, double tolerance) {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) EXPECT_NEAR(actual[i][j], expected[i][j], tolerance) << i << ',' << j;
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

TEST(Matrix, WritesRowsBetweenBrackets) {
    double const one[1][1] = {{2.5}};
    EXPECT_EQ(written(Matrix<1>{one}), L"[2.5]");
    EXPECT_EQ(written(Matrix<2>{}), L"[1,0/0,1]");
    double const three[3][3] = {{1, -2, 3}, {4, 5.5, 6}, {7, 8, 9e20}};
    EXPECT_EQ(written(Matrix<3>{three}), L"[1,-2,3/4,5.5,6/7,8,9e+20]");
    EXPECT_EQ(written(Matrix<4>{}), L"[1,0,0,0/0,1,0,0/0,0,1,0/0,0,0,1]");
}

TEST(Matrix, RowsGoInAndOutInOrder) {
    double const rows[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    Matrix<3> const m{rows};
    EXPECT_EQ(m[1][2], 6);
    EXPECT_EQ(m.transpose()[1][2], 8);
    double out[3][3];
    m.packToPod(out);
    EXPECT_EQ(std::memcmp(out, rows, sizeof rows), 0);
}

TEST(Matrix, ProductAppliesTheLeftFactorFirst) {
    double const quarterTurn[2][2] = {{0, 1}, {-1, 0}};
    double const stretch[2][2] = {{2, 0}, {0, 3}};
    Matrix<2> const a{quarterTurn};
    Matrix<2> const b{stretch};
    EXPECT_EQ(written(a * b), L"[0,3/-2,0]");
    EXPECT_EQ(written(b * a), L"[0,2/-3,0]");
    Matrix<2> self = a * b;
    double const square[2][2] = {{-6, 0}, {0, -6}};
    expectEqual(self *= self, Matrix<2>{square});
}

TEST(Matrix, OrderOneDividesThroughTheReciprocal) {
    double const dividend[1][1] = {{5}};
    double const divisor[1][1] = {{49}};
    Matrix<1> m{dividend};
    m /= Matrix<1>{divisor};
    EXPECT_EQ(m[0][0], 5 * (1.0 / 49));
    EXPECT_NE(m[0][0], 5.0 / 49);
}

template <typename M>
class MatrixOfOrder;
template <int N>
class MatrixOfOrder<Matrix<N>> : public testing::Test {
public:
    static constexpr int order = N;
};
using Orders = testing::Types<Matrix<1>, Matrix<2>, Matrix<3>, Matrix<4>>;
TYPED_TEST_SUITE(MatrixOfOrder, Orders);

TYPED_TEST(MatrixOfOrder, LawsOfProducts) {
    constexpr int N = TestFixture::order;
    std::mt19937 random{1};
    for (int round = 0; round < 200; ++round) {
        TypeParam const a = randomWhole<N>(random);
        TypeParam const b = randomWhole<N>(random);
        TypeParam const c = randomWhole<N>(random);
        expectEqual(a * TypeParam{}, a);
        expectEqual(TypeParam{} * a, a);
        expectEqual((a * b) * c, a * (b * c));
        expectEqual((a * b).transpose(), b.transpose() * a.transpose());
        if constexpr (N < 4) {
            EXPECT_EQ((a * b).determinant(), a.determinant() * b.determinant());
        }

        double const components[4] = {3, -2, 7, 5};
        Vector<N> const v{components};
        EXPECT_TRUE((Vector<N>{Vector<N>{v, a}, b}) == (Vector<N>{v, a * b}));
    }
}

TYPED_TEST(MatrixOfOrder, InverseUndoes) {
    constexpr int N = TestFixture::order;
    std::mt19937 random{2};
    int regular = 0;
    for (int round = 0; round < 500; ++round) {
        TypeParam const a = randomWhole<N>(random);
        long double const determinant = leibniz(a);
        if constexpr (N < 4) {
            EXPECT_EQ(a.determinant(), static_cast<double>(determinant));
        }
        if (determinant == 0) continue;
        ++regular;
        // Entries below 10 in size: the cofactors stay below 10^4, and so does the condition number's share.
        expectNear(a * a.inverse(), TypeParam{}, 1e-10);
        expectNear(a.inverse() * a, TypeParam{}, 1e-10);
        expectNear(a / a, TypeParam{}, 1e-10);
        TypeParam quotient{a};
        quotient /= a;
        expectEqual(quotient, a / a);
    }
    EXPECT_GT(regular, 400);
}

TEST(Matrix, InverseByHand) {
    double const two[2][2] = {{1, 2}, {3, 4}};
    EXPECT_EQ(written(Matrix<2>{two}.inverse()), L"[-2,1/1.5,-0.5]");
    double const three[3][3] = {{2, 1, 1}, {1, 3, 2}, {1, 0, 0}};
    EXPECT_EQ(Matrix<3>{three}.determinant(), -1);
    EXPECT_EQ(written(Matrix<3>{three}.inverse()), L"[-0,-0,1/-2,1,3/3,-1,-5]");
    double const four[4][4] = {{0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 1, 0}};
    expectEqual(Matrix<4>{four}.inverse(), Matrix<4>{four});
    expectEqual(Matrix<3>{}.inverse(), Matrix<3>{});
}

TEST(Matrix, OrderFourPivotsOnTheLargestElementRelativeToItsRow) {
    // By size row 0 would be the pivot and the result would lose all digits of the second column.
    double const rows[4][4] = {{10, 1e20, 0, 0}, {1, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Matrix<4> const inverse = Matrix<4>{rows}.inverse();
    EXPECT_EQ(inverse[0][0], -1e-20);
    EXPECT_EQ(inverse[0][1], 1);
    EXPECT_EQ(inverse[1][0], 1e-20);
    EXPECT_NEAR(inverse[1][1], -1e-19, 1e-34);
}

TEST(Matrix, SingularGivesNoFiniteInverse) {
    double const two[2][2] = {{1, 2}, {2, 4}};
    EXPECT_EQ(Matrix<2>{two}.determinant(), 0);
    double const zeros[4][4] = {};
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) EXPECT_FALSE(std::isfinite(Matrix<2>{two}.inverse()[i][j]));
    EXPECT_TRUE(std::isnan(Matrix<4>{zeros}.inverse()[2][2]));
}

TEST(Matrix, DeterminantOfOrderFourIsNotImplemented) {
    try {
        Matrix<4>{}.determinant();
        FAIL();
    } catch (ORN::NotImplemented const& error) {
        EXPECT_STREQ(error.what(), "Matrix<M>::determinant");
        EXPECT_STREQ(error.wWhat(), L"Matrix<M>::determinant");
    }
}

TEST(Matrix, VectorProductsAddTheTranslationOnceOrTwice) {
    double const one[1][1] = {{3}};
    EXPECT_EQ((Vector<1>{Vector<1>{2.0}, Matrix<1>{one}}).x(), 6);
    EXPECT_EQ((Vector<1>{Vector<1>{2.0}, Matrix<1>{one}, Vector<1>{1.0}}).x(), 8);

    double const two[2][2] = {{1, 10}, {100, 1000}};
    EXPECT_TRUE((Vector<2>{Vector<2>{2, 3}, Matrix<2>{two}, Vector<2>{5, 7}}) == (Vector<2>{307, 3027}));

    double const three[3][3] = {{1, 2, 3}, {10, 20, 30}, {100, 200, 300}};
    EXPECT_TRUE((Vector<3>{Vector<3>{1, 2, 3}, Matrix<3>{three}, Vector<3>{1, 1, 1}}) == (Vector<3>{322, 643, 964}));

    Vector<4> const v{1, 2, 3, 4};
    EXPECT_TRUE((Vector<4>{v, Matrix<4>{}, v}) == (Vector<4>{3, 6, 9, 12}));
    // At 2⁵³ the next number is 2 away: t added twice is lost twice, 2·t added once would not be.
    Vector<4> const big{9007199254740992.0, 0, 0, 0};
    EXPECT_EQ((Vector<4>{big, Matrix<4>{}, Vector<4>{1, 0, 0, 0}})[0], 9007199254740992.0);
}

}
