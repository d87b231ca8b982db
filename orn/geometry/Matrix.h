/// Square matrices of order 1 to 4, stored by rows. Points and vectors are row vectors that stand on the left, so a
/// product A·B applies A first.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Point.h"
#include "orn/geometry/Vector.h"

#include <iosfwd>
#include <span>

ORN_INT_BOUNDS

template <int N>
class ORN_API_TEMPLATE Matrix;

/// @cond
namespace ORN {
struct TransformApplication;
}
/// @endcond

/// A view of one row, valid while its matrix lives.
template <int N>
class ORN_API MatrixRow {
public:
    constexpr double operator[](int column) const noexcept { return elements_[column]; }  ///< the index is not tested

private:
    friend class Matrix<N>;

    constexpr explicit MatrixRow(double const* elements) noexcept : elements_{elements} {}

    double const* elements_;
};

/// Element [i][j] is row i, column j. Nothing tests for a singular matrix: its inverse has infinite or NaN elements.
template <int N>
class ORN_API Matrix {
    static_assert(1 <= N && N <= 4, "matrices have order 1 to 4");

public:
    constexpr Matrix() noexcept;                                  ///< the identity
    constexpr explicit Matrix(double const (*rows)[N]) noexcept;  ///< copies N rows

    constexpr MatrixRow<N> operator[](int row) const noexcept { return MatrixRow<N>{elements_[row]}; }  ///< not tested
    constexpr void packToPod(double (*const rows)[N]) const noexcept;  ///< fills N rows

    double determinant() const;                   ///< throws ORN::NotImplemented for order 4
    constexpr Matrix transpose() const noexcept;  ///< rows for columns
    Matrix inverse() const noexcept;  ///< the adjugate over the determinant; order 4 by elimination with scaled pivots

    /// a·b, and a times the inverse of b.
    /// @{
    constexpr Matrix& operator*=(Matrix const& b) noexcept { return *this = Matrix{elements_, b.elements_}; }
    Matrix& operator/=(Matrix const& b) noexcept { return *this *= b.inverse(); }
    /// @}

    /// a·b, and a times the inverse of b.
    /// @{
    friend constexpr Matrix operator*(Matrix const& a, Matrix const& b) noexcept {
        return Matrix{a.elements_, b.elements_};
    }
    friend Matrix operator/(Matrix const& a, Matrix const& b) noexcept { return a * b.inverse(); }
    /// @}

    /// The rows between brackets, as in [1,0/0,1].
    friend std::wostream& operator<<(std::wostream& os, Matrix const& m) { return m.putOn(os); }

private:
    template <int>
    friend class Point;
    template <int>
    friend class Vector;
    friend struct ORN::TransformApplication;

    // Component j of a row vector times the matrix, added up from left to right.
    template <class Row>
    constexpr double product(Row const& v, int j) const noexcept {
        auto const& m = elements_;
        if constexpr (N == 1) {
            return v[0] * m[0][j];
        } else if constexpr (N == 2) {
            return v[0] * m[0][j] + v[1] * m[1][j];
        } else if constexpr (N == 3) {
            return v[0] * m[0][j] + v[1] * m[1][j] + v[2] * m[2][j];
        } else {
            return v[0] * m[0][j] + v[1] * m[1][j] + v[2] * m[2][j] + v[3] * m[3][j];
        }
    }

    constexpr Matrix(double const (*a)[N], double const (*b)[N]) noexcept;  // the product a·b
    constexpr Matrix(double const (*rows)[N], int const* order) noexcept;   // row i is rows[order[i]]

    std::wostream& putOn(std::wostream& os) const;

    double elements_[N][N];
};

template <int N>
constexpr Matrix<N>::Matrix() noexcept : elements_{} {
    for (int i = 0; i < N; ++i) elements_[i][i] = 1.0;
}

template <int N>
constexpr Matrix<N>::Matrix(double const (*rows)[N]) noexcept {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) elements_[i][j] = rows[i][j];
}

template <int N>
constexpr Matrix<N>::Matrix(double const (*a)[N], double const (*b)[N]) noexcept {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) {
            double sum = a[i][0] * b[0][j];
            for (int k = 1; k < N; ++k) sum += a[i][k] * b[k][j];
            elements_[i][j] = sum;
        }
}

template <int N>
constexpr Matrix<N>::Matrix(double const (*rows)[N], int const* order) noexcept {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) elements_[i][j] = rows[order[i]][j];
}

template <int N>
constexpr void Matrix<N>::packToPod(double (*const rows)[N]) const noexcept {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) rows[i][j] = elements_[i][j];
}

template <int N>
constexpr Matrix<N> Matrix<N>::transpose() const noexcept {
    Matrix result;
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) result.elements_[i][j] = elements_[j][i];
    return result;
}

template <int N>
inline double Matrix<N>::determinant() const {
    auto const& m = elements_;
    if constexpr (N == 1) {
        return m[0][0];
    } else if constexpr (N == 2) {
        return m[0][0] * m[1][1] - m[1][0] * m[0][1];
    } else {
        return m[0][1] * (m[1][2] * m[2][0] - m[1][0] * m[2][2]) + m[0][0] * (m[1][1] * m[2][2] - m[2][1] * m[1][2]) +
               m[0][2] * (m[2][1] * m[1][0] - m[1][1] * m[2][0]);
    }
}

template <int N>
inline Matrix<N> Matrix<N>::inverse() const noexcept {
    auto const& m = elements_;
    double const d = determinant();
    if constexpr (N == 1) {
        double const rows[1][1] = {{1.0 / d}};
        return Matrix{rows};
    } else if constexpr (N == 2) {
        double const rows[2][2] = {{m[1][1] / d, m[0][1] / -d}, {m[1][0] / -d, m[0][0] / d}};
        return Matrix{rows};
    } else {
        double const rows[3][3] = {
            {(m[1][1] * m[2][2] - m[1][2] * m[2][1]) / d, (m[0][2] * m[2][1] - m[0][1] * m[2][2]) / d,
             (m[0][1] * m[1][2] - m[0][2] * m[1][1]) / d},
            {(m[1][2] * m[2][0] - m[1][0] * m[2][2]) / d, (m[0][0] * m[2][2] - m[0][2] * m[2][0]) / d,
             (m[0][2] * m[1][0] - m[0][0] * m[1][2]) / d},
            {(m[1][0] * m[2][1] - m[1][1] * m[2][0]) / d, (m[0][1] * m[2][0] - m[0][0] * m[2][1]) / d,
             (m[0][0] * m[1][1] - m[0][1] * m[1][0]) / d}};
        return Matrix{rows};
    }
}

/// out[i] = in[i].inverse(), bit for bit and faster. The two may be the same array; otherwise they must not overlap. Throws
/// std::logic_error, and writes nothing, when their lengths differ.
ORN_API void invert(std::span<Matrix<3> const> in, std::span<Matrix<3>> out);

/// Order 4: throws ORN::NotImplemented.
template <>
ORN_API double Matrix<4>::determinant() const;

/// Order 4: by elimination with scaled pivots.
template <>
ORN_API Matrix<4> Matrix<4>::inverse() const noexcept;

inline Vector<1>::Vector(Vector const& v, Matrix<1> const& m) noexcept : x_{m.product(v, 0)} {}
inline Vector<1>::Vector(Vector const& v, Matrix<1> const& m, Vector const& t) noexcept
    : x_{m.product(v, 0) + t.x_ + t.x_} {}
inline Point<1>::Point(Point const& p, Matrix<1> const& m) noexcept : x_{m.product(p, 0)} {}
inline Point<1>::Point(Point const& p, Matrix<1> const& m, Vector<1> const& t) noexcept
    : x_{m.product(p, 0) + t.x() + t.x()} {}

inline Vector<2>::Vector(Vector const& v, Matrix<2> const& m) noexcept : x_{m.product(v, 0)}, y_{m.product(v, 1)} {}
inline Vector<2>::Vector(Vector const& v, Matrix<2> const& m, Vector const& t) noexcept
    : x_{m.product(v, 0) + t.x_}, y_{m.product(v, 1) + t.y_} {}
inline Point<2>::Point(Point const& p, Matrix<2> const& m) noexcept : x_{m.product(p, 0)}, y_{m.product(p, 1)} {}
inline Point<2>::Point(Point const& p, Matrix<2> const& m, Vector<2> const& t) noexcept
    : x_{m.product(p, 0) + t.x()}, y_{m.product(p, 1) + t.y()} {}

inline Vector<3>::Vector(Vector const& v, Matrix<3> const& m) noexcept
    : x_{m.product(v, 0)}, y_{m.product(v, 1)}, z_{m.product(v, 2)} {}
inline Vector<3>::Vector(Vector const& v, Matrix<3> const& m, Vector const& t) noexcept
    : x_{m.product(v, 0) + t.x_}, y_{m.product(v, 1) + t.y_}, z_{m.product(v, 2) + t.z_} {}
inline Point<3>::Point(Point const& p, Matrix<3> const& m) noexcept
    : x_{m.product(p, 0)}, y_{m.product(p, 1)}, z_{m.product(p, 2)} {}
inline Point<3>::Point(Point const& p, Matrix<3> const& m, Vector<3> const& t) noexcept
    : x_{m.product(p, 0) + t.x()}, y_{m.product(p, 1) + t.y()}, z_{m.product(p, 2) + t.z()} {}

inline Vector<4>::Vector(Vector const& v, Matrix<4> const& m) noexcept
    : c_{m.product(v, 0), m.product(v, 1), m.product(v, 2), m.product(v, 3)} {}
inline Vector<4>::Vector(Vector const& v, Matrix<4> const& m, Vector const& t) noexcept : Vector{v, m} {
    for (int j = 0; j < 4; ++j) c_[j] = (t.c_[j] + c_[j]) + t.c_[j];
}

namespace ORN {

// For programs in which another library has such a name, too.
using ::Matrix;

}

ORN_INT_BOUNDS_END
