/// What draws lines: a regular polygon around a circle's centre.
#pragma once

#include "drawing/Samples.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace drawing {

/// A side of a segment: from the segment to the line beside it, and the corner of the pen that reaches farthest there.
struct Side {
    Place offset;
    std::size_t corner;
};

/// Its corners are counted anticlockwise on the page, from the one at the right. Their number is even.
class Pen {
public:
    explicit Pen(double width);  ///< in pixels

    std::int32_t reach() const { return reach_; }  ///< half of the width, in steps
    std::int32_t top() const;                      ///< where the topmost corners lie, in steps: below 0

    Place const& corner(std::size_t i) const { return corners_[i]; }
    std::size_t next(std::size_t i) const { return i + 1 < corners_.size() ? i + 1 : 0; }

    /// The right side of a segment, y downwards. Its ends differ.
    Side rightSide(Place const& from, Place const& to) const;
    /// The left side of the same segment.
    Side opposite(Side const& side) const;

    /// Whether all sides of the polygon are shorter than half of a pixel.
    bool isFine() const { return !halfWidths_.empty(); }
    /// Half of a fine pen's width, in steps, on the lines of samples below its top: on all that it meets, and perhaps on one
    /// more. The place of the pen's top is given.
    std::span<std::int32_t const> halfWidths(std::int32_t top) const;

private:
    void measure();

    double radius_;  // in steps
    std::int32_t reach_;
    std::vector<Place> corners_;
    std::size_t lines_ = 0;                 // of samples that the pen meets, or one more
    std::vector<std::int32_t> halfWidths_;  // line by line, for each place of the top between two lines
};

}
