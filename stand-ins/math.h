// Functions where C has macros.
#pragma once
#include_next <math.h>

#undef fpclassify
#undef isfinite
#undef isgreater
#undef isgreaterequal
#undef isinf
#undef isless
#undef islessequal
#undef islessgreater
#undef isnan
#undef isnormal
#undef isunordered

extern "C++" {
template <typename Number>
int fpclassify(Number x) noexcept;
template <typename Number>
bool isfinite(Number x) noexcept;
template <typename Number>
bool isinf(Number x) noexcept;
template <typename Number>
bool isnan(Number x) noexcept;
template <typename Number>
bool isnormal(Number x) noexcept;
template <typename A, typename B>
bool isgreater(A a, B b) noexcept;
template <typename A, typename B>
bool isgreaterequal(A a, B b) noexcept;
template <typename A, typename B>
bool isless(A a, B b) noexcept;
template <typename A, typename B>
bool islessequal(A a, B b) noexcept;
template <typename A, typename B>
bool islessgreater(A a, B b) noexcept;
template <typename A, typename B>
bool isunordered(A a, B b) noexcept;
}
