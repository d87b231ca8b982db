/// Where pixels are sampled: along fifteen level lines in each row, through the middle of their shares of the row.
#pragma once

#include <cstdint>

namespace drawing {

inline constexpr int stepsPerPixel = 256;
inline constexpr int linesPerRow = 15;
inline constexpr int moreBits = 32;  ///< below one step, of what is computed more finely than a Place

/// In steps from the top left corner of a band of the page, y downwards.
struct Place {
    std::int32_t x, y;

    friend bool operator==(Place const&, Place const&) = default;
    friend Place operator+(Place const& a, Place const& b) { return {a.x + b.x, a.y + b.y}; }
    friend Place operator-(Place const& a, Place const& b) { return {a.x - b.x, a.y - b.y}; }
    friend Place operator-(Place const& a) { return {-a.x, -a.y}; }
};

/// The first line of samples that lies below a place.
inline int lineBelow(std::int32_t y) {
    return static_cast<int>((std::int64_t{y} * linesPerRow + stepsPerPixel / 2) >> 8);
}

/// From a place down to a line of samples, in fifteenths of a step: from one line to the next it is stepsPerPixel.
inline std::int64_t downTo(int line, std::int32_t y) {
    return (2 * std::int64_t{line} + 1) * (stepsPerPixel / 2) - std::int64_t{y} * linesPerRow;
}

/// To the nearest whole number; half of one goes up.
inline std::int32_t nearest(double value) {
    // The floor of the sum: a cast, which is fast, cuts towards zero, and the line behind it corrects what is below zero.
    auto const truncated = static_cast<std::int32_t>(value + 0.5);  // NOLINT(bugprone-incorrect-roundings)
    return truncated - (truncated > value + 0.5 ? 1 : 0);
}

/// By how much an edge moves to the right from one line of samples to the next, with moreBits. Not for level edges.
inline std::int64_t stepOf(Place const& way) {
    return static_cast<std::int64_t>(way.x * (stepsPerPixel * 4294967296.0) /
                                     (static_cast<double>(way.y) * linesPerRow));
}

}
