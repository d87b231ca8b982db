/// How much of each pixel of a row an area covers.
#pragma once

#include "drawing/Intervals.h"
#include "drawing/Samples.h"

#include <cstdint>
#include <vector>

namespace drawing {

/// Columns of pixels, of which `end` is the first one behind.
struct Columns {
    int first, end;
};

/// Where a straight edge enters a row of pixels and where it leaves it, in steps from the left of the picture, with
/// moreBits.
struct Crossing {
    std::int64_t top, bottom;
};

/// Collects the parts of one row, which must have nothing in common. Places are in steps from
/// the left of the picture; what lies outside of it is cut off.
class Coverage {
public:
    explicit Coverage(int width);  ///< in pixels

    /// What lies between two edges that cross the whole row.
    void addTrapezoid(Crossing const& left, Crossing const& right);

    /// What intervals of the row's lines of samples cover within some columns; both arrays have `lanes` places.
    void addIntervals(std::int32_t const* lefts, std::int32_t const* rights, Columns const& within);

    /// Draws with one colour over the pixels of the row, and begins a new row.
    void blend(std::uint32_t* pixels, std::uint32_t rgb);

private:
    void addBeside(Crossing const& edge, Columns const& columns, int sign);

    int width_;
    std::vector<std::int32_t> areas_;  // of each pixel, in halves of a step times a line of samples
    std::vector<Columns> columns_;     // outside of which all areas are 0
};

}
