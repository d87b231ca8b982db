/// The pairs of code units that stand for the code points above U+FFFF in UTF-16.
#pragma once

/// Whether a value is a surrogate: any one, a leading one, a trailing one. All 32 bits count: 0x1D800 is no surrogate.
/// @{
constexpr bool isSurrogate(unsigned int u) noexcept { return (u & 0xFFFFF800u) == 0xD800u; }
constexpr bool isSurrogateA(unsigned int u) noexcept { return (u & 0xFFFFFC00u) == 0xD800u; }
constexpr bool isSurrogateB(unsigned int u) noexcept { return (u & 0xFFFFFC00u) == 0xDC00u; }
/// @}

/// Combines a leading and a trailing surrogate; false, with out untouched, for any other two units.
constexpr bool fromUTF16(unsigned int& out, unsigned int a, unsigned int b) noexcept {
    if (!isSurrogateA(a) || !isSurrogateB(b)) return false;
    out = ((a - 0xD800u) << 10 | (b - 0xDC00u)) + 0x10000u;
    return true;
}
