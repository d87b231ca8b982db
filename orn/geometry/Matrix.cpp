#include "orn/geometry/Matrix.h"

#include "orn/foundation/Error.h"

#include <cmath>
#include <ostream>
#include <utility>

template <>
double Matrix<4>::determinant() const {
    throw ORN::NotImplemented{L"Matrix<M>::determinant"};
}

template <>
Matrix<4> Matrix<4>::inverse() const noexcept {
    double a[4][4];
    packToPod(a);
    double b[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    int p[4] = {0, 1, 2, 3};
    double scale[4];
    for (int r = 0; r < 4; ++r) {
        scale[r] = 0.0;
        for (double const element : a[r])
            if (std::fabs(element) > scale[r]) scale[r] = std::fabs(element);
    }

    for (int k = 0; k < 3; ++k) {
        int chosen = k;
        double largest = std::fabs(a[p[k]][k]) / scale[p[k]];
        for (int i = k + 1; i < 4; ++i) {
            double const ratio = std::fabs(a[p[i]][k]) / scale[p[i]];
            if (ratio > largest) {
                largest = ratio;
                chosen = i;
            }
        }
        std::swap(p[k], p[chosen]);

        double const* const pivot = a[p[k]];
        for (int i = k + 1; i < 4; ++i) {
            double* const row = a[p[i]];
            double const f = row[k] / pivot[k];
            for (int j = k + 1; j < 4; ++j) row[j] -= f * pivot[j];
            for (int j = 0; j < 4; ++j) b[p[i]][j] -= f * b[p[k]][j];
        }
    }

    for (int k = 3; k >= 0; --k) {
        double const v = a[p[k]][k];
        for (int i = k - 1; i >= 0; --i) {
            double const f = a[p[i]][k] / v;
            for (int j = 0; j < 4; ++j) b[p[i]][j] -= f * b[p[k]][j];
        }
        for (double& element : b[p[k]]) element /= v;
    }
    return Matrix{b, p};
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
