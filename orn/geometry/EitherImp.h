// A choice without a branch.
#pragma once

#include <bit>
#include <cstdint>

namespace ORN {

/// One of two by masks: where it cannot be foreseen which one, a branch guessed wrong costs more than computing both.
inline double either(bool first, double a, double b) noexcept {
    auto const mask = -static_cast<std::uint64_t>(first);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) | (std::bit_cast<std::uint64_t>(b) & ~mask));
}

}
