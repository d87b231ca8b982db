#include "drawing/Coverage.h"

#include <algorithm>

namespace drawing {

namespace {

constexpr std::int32_t whole = linesPerRow * 2 * stepsPerPixel;  // the area of a pixel

/// The four channels of a pixel, with 16 bits for each.
std::uint64_t apart(std::uint32_t rgb) { return (rgb & 0xFF00FF) | (std::uint64_t{rgb & 0xFF00FF00} << 24); }

/// Alpha parts of 255 of each channel, rounded.
std::uint64_t times(std::uint64_t channels, std::uint32_t alpha) {
    std::uint64_t const product = channels * alpha + 0x0080'0080'0080'0080;
    return (product + (product >> 8 & 0x00FF'00FF'00FF'00FF)) >> 8 & 0x00FF'00FF'00FF'00FF;
}

/// Alpha parts of 255 of the upper channels, and the rest of the lower ones. Each product is rounded.
std::uint32_t blend(std::uint64_t upper, std::uint64_t lower, std::uint32_t alpha) {
    std::uint64_t const sum = times(upper, alpha) + times(lower, 255 - alpha);
    return static_cast<std::uint32_t>(sum | sum >> 24);
}

/// The number of the column that a place lies in.
std::int64_t columnOf(std::int64_t x) { return x >> (moreBits + 8); }

}

Coverage::Coverage(int width) : width_{width}, areas_(static_cast<std::size_t>(width)) {}

void Coverage::addTrapezoid(Crossing const& left, Crossing const& right) {
    std::int64_t const first = columnOf(std::min(left.top, left.bottom));
    std::int64_t const end = columnOf(std::max(right.top, right.bottom)) + 1;
    Columns const columns{static_cast<int>(std::max<std::int64_t>(first, 0)),
                          static_cast<int>(std::min<std::int64_t>(end, width_))};
    if (columns.first >= columns.end) return;
    columns_.push_back(columns);
    addBeside(left, columns, 1);
    addBeside(right, columns, -1);
}

/// What lies to the right of an edge: below the border of two columns the edge has passed a whole number of lines, and
/// within a column it takes a part of those that it passes there.
void Coverage::addBeside(Crossing const& edge, Columns const& columns, int sign) {
    std::int64_t const left = std::min(edge.top, edge.bottom), right = std::max(edge.top, edge.bottom);
    std::int64_t const first = columnOf(left), last = columnOf(right);
    auto const within = [](std::int64_t x) { return static_cast<std::int32_t>((x >> moreBits) & (stepsPerPixel - 1)); };
    auto const linesBefore = [&](std::int64_t column) {
        return static_cast<std::int32_t>(((column << (moreBits + 8)) - left) * linesPerRow / (right - left));
    };
    std::int32_t lines = first < columns.first && columns.first <= last ? linesBefore(columns.first) : 0;
    std::int64_t column = std::max<std::int64_t>(first, columns.first);
    for (; column < std::min<std::int64_t>(last + 1, columns.end); ++column) {
        std::int32_t const here = (column < last ? linesBefore(column + 1) : linesPerRow) - lines;
        std::int32_t const beside =
            (column == first ? within(left) : 0) + (column == last ? within(right) : stepsPerPixel);
        lines += here;
        areas_[static_cast<std::size_t>(column)] += sign * (lines * 2 * stepsPerPixel - here * beside);
    }
    for (; column < columns.end; ++column) areas_[static_cast<std::size_t>(column)] += sign * whole;
}

void Coverage::addIntervals(std::int32_t const* lefts, std::int32_t const* rights, Columns const& within) {
    constexpr int most = Intervals::window / stepsPerPixel - 1;  // columns that are measured at once
    Columns all{width_, 0};
    for (int begin = std::max(within.first, 0); begin < std::min(within.end, width_); begin += most) {
        Intervals const intervals{lefts, rights, begin * stepsPerPixel};
        int const first = begin + intervals.first() / stepsPerPixel;
        int const end = std::min(
            {begin + (intervals.last() + stepsPerPixel - 1) / stepsPerPixel, begin + most, within.end, width_});
        if (first >= end) continue;
        all = {std::min(all.first, first), end};
        std::int32_t here = intervals.beyond((first - begin) * stepsPerPixel);
        for (int column = first; column < end; ++column) {
            std::int32_t const next = intervals.beyond((column + 1 - begin) * stepsPerPixel);
            areas_[static_cast<std::size_t>(column)] += 2 * (here - next);
            here = next;
        }
    }
    if (all.first < all.end) columns_.push_back(all);
}

void Coverage::blend(std::uint32_t* pixels, std::uint32_t rgb) {
    std::uint64_t const upper = apart(rgb);
    if (columns_.size() > 1) std::ranges::sort(columns_, {}, &Columns::first);
    int column = 0;
    for (Columns const& columns : columns_) {
        for (column = std::max(column, columns.first); column < columns.end; ++column) {
            std::int32_t& area = areas_[static_cast<std::size_t>(column)];
            // 15 * 17 is 255: the whole area gives 255 parts. 256, half of 512, rounds.
            auto const alpha = static_cast<std::uint32_t>((area * 17 + 256) >> 9);
            area = 0;
            pixels[column] = drawing::blend(upper, apart(pixels[column]), alpha);
        }
    }
    columns_.clear();
}

}
