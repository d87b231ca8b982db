#include "orn/geometry/Matrix.h"

#include "orn/foundation/Error.h"

#include <cmath>
#include <cstddef>
#include <ostream>
#include <stdexcept>

template <>
double Matrix<4>::determinant() const {
    throw ORN::NotImplemented{L"Matrix<M>::determinant"};
}

namespace {

/// A row of the matrix, and where that of its inverse comes to be.
struct Row {
    double a[4];
    double scale;  // the largest size of an element of the original row
    double (*b)[4];
};

// Subtracts f times another row, also in columns that nothing reads any more: four doubles are two vector registers.
inline void subtract(double (&row)[4], double f, double const (&other)[4]) noexcept {
    double const copy[4] = {other[0], other[1], other[2], other[3]};
    for (int j = 0; j < 4; ++j) row[j] -= f * copy[j];
}

// Makes the row with the largest element in column K, relative to its scale, the pivot and clears the column below. Nobody
// can foresee which row that is, so it is chosen and exchanged without branches.
template <int K>
inline void eliminate(Row* (&p)[4]) noexcept {
    Row* pivot = p[K];
    double largest = std::fabs(pivot->a[K]) / pivot->scale;
    for (int i = K + 1; i < 4; ++i) {
        double const ratio = std::fabs(p[i]->a[K]) / p[i]->scale;
        pivot = ratio > largest ? p[i] : pivot;
        largest = ratio > largest ? ratio : largest;
    }
    for (int i = K + 1; i < 4; ++i) p[i] = p[i] == pivot ? p[K] : p[i];
    p[K] = pivot;

    for (int i = K + 1; i < 4; ++i) {
        double const f = p[i]->a[K] / pivot->a[K];
        subtract(p[i]->a, f, pivot->a);
        subtract(*p[i]->b, f, *pivot->b);
    }
}

// Clears column K above the pivot and divides by it. The left side is known to become the identity and is not written.
template <int K>
inline void substitute(Row* (&p)[4]) noexcept {
    double const v = p[K]->a[K];
    for (int i = K - 1; i >= 0; --i) subtract(*p[i]->b, p[i]->a[K] / v, *p[K]->b);
    for (double& element : *p[K]->b) element /= v;
}

}

template <>
Matrix<4> Matrix<4>::inverse() const noexcept {
    double b[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Row rows[4] = {};
    Row* p[4];
    for (int i = 0; i < 4; ++i) {
        p[i] = &rows[i];
        for (int j = 0; j < 4; ++j) {
            double const size = std::fabs(elements_[i][j]);
            rows[i].a[j] = elements_[i][j];
            rows[i].scale = size > rows[i].scale ? size : rows[i].scale;
        }
        rows[i].b = &b[i];
    }
    eliminate<0>(p);
    eliminate<1>(p);
    eliminate<2>(p);
    substitute<3>(p);
    substitute<2>(p);
    substitute<1>(p);
    substitute<0>(p);

    int order[4];
    for (int i = 0; i < 4; ++i) order[i] = static_cast<int>(p[i] - rows);
    return Matrix{b, order};
}

namespace {

using Matrices = std::span<Matrix<3> const>;
using Inverses = std::span<Matrix<3>>;

// Inlined into a function of wider registers, whose divider takes four quotients at a time.
[[gnu::always_inline]] inline void invertEach(Matrices in, Inverses out) noexcept {
    for (std::size_t i = 0; i < in.size(); ++i) out[i] = in[i].inverse();
}

#if defined(__GNUC__) && defined(__x86_64__)
__attribute__((target("avx2"))) void invertInFours(Matrices in, Inverses out) noexcept { invertEach(in, out); }
bool inFours() noexcept { return __builtin_cpu_supports("avx2") != 0; }
#else
void invertInFours(Matrices in, Inverses out) noexcept { invertEach(in, out); }
bool inFours() noexcept { return false; }
#endif

}

void invert(Matrices in, Inverses out) {
    if (in.size() != out.size()) throw std::logic_error{"invert: the two ranges differ in length"};
    if (inFours())
        invertInFours(in, out);
    else
        invertEach(in, out);
}

template <int N>
std::wostream& Matrix<N>::putOn(std::wostream& os) const {
    wchar_t before = L'[';
    for (auto const& row : elements_) {
        for (double const element : row) {
            os << before << element;
            before = L',';
        }
        before = L'/';
    }
    return os << L']';
}

template class Matrix<1>;
template class Matrix<2>;
template class Matrix<3>;
template class Matrix<4>;
