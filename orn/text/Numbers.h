/// Strict parsing of numbers: the whole text is the number, or there is none. Neither function looks at the locale or
/// allocates, and both leave *out alone when they return false.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <cstddef>

/// A decimal integer of the signed 32-bit range in exactly `length` units: blanks (space, tab), a sign, digits, and
/// nothing behind them.
ORN_API bool isLong(LONG* out, wchar_t const* text, std::size_t length) noexcept;

/// A decimal number in exactly `length` units: blanks, a sign, digits with at most one full stop among or around them,
/// and an exponent, which is E, e, D or d and what isLong accepts (blanks and a sign included).
///
/// The first 17 significant digits count, further ones are ignored; the result lies within a few units in the last
/// place. A value of 1e309 or more (by its exponent, also with a zero before it) or above the largest finite double is no
/// number here, and no number reads as infinity. What is less than 1e-309 becomes +0.0, whatever its sign.
ORN_API bool isDouble(double* out, wchar_t const* text, std::size_t length) noexcept;
