#include "drawing/Pen.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace drawing {

Pen::Pen(double width) : radius_{width / 2 * stepsPerPixel}, reach_{nearest(radius_)} {
    // The sides keep within a tenth of a pixel of the circle.
    double const apart = std::acos(std::max(1 - 0.1 / (width / 2), 0.0));
    int const half = std::max(2, static_cast<int>(std::ceil(std::numbers::pi / apart)));
    for (int i = 0; i < 2 * half; ++i) {
        double const angle = -std::numbers::pi * i / half;
        corners_.push_back({nearest(radius_ * std::cos(angle)), nearest(radius_ * std::sin(angle))});
    }
    if (std::numbers::pi * radius_ / half < stepsPerPixel / 2) measure();
}

std::int32_t Pen::top() const { return corners_[corners_.size() / 4].y; }

void Pen::measure() {
    lines_ = static_cast<std::size_t>(-2 * top() * linesPerRow / stepsPerPixel) + 1;
    halfWidths_.resize(lines_ * stepsPerPixel);
    // Down the right side, in fifteenths of a step; the pen is as wide at its left.
    std::size_t const topmost = corners_.size() / 4, count = corners_.size();
    for (std::size_t i = topmost; i != count - topmost; i = (i + count - 1) % count) {
        Place const& upper = corners_[i];
        Place const& lower = corners_[(i + count - 1) % count];
        double const slope = static_cast<double>(lower.x - upper.x) / ((lower.y - upper.y) * linesPerRow);
        for (std::int32_t down = 1; down <= (lower.y - upper.y) * linesPerRow; ++down) {
            auto const below = static_cast<std::size_t>((upper.y - top()) * linesPerRow + down - 1);
            halfWidths_[below % stepsPerPixel * lines_ + below / stepsPerPixel] = nearest(upper.x + down * slope);
        }
    }
}

std::span<std::int32_t const> Pen::halfWidths(std::int32_t top) const {
    // A line lies below the top by a fifteenth of a step at least.
    auto const place = static_cast<std::size_t>(downTo(lineBelow(top), top) - 1);
    return std::span{halfWidths_}.subspan(place * lines_, lines_);
}

Side Pen::rightSide(Place const& from, Place const& to) const {
    Place const way = to - from;
    double const dx = way.x, dy = way.y, scale = radius_ / std::sqrt(dx * dx + dy * dy);
    std::size_t corner = 0;
    std::int64_t reach = std::numeric_limits<std::int64_t>::min();
    for (std::size_t i = 0; i < corners_.size(); ++i) {
        std::int64_t const farther = std::int64_t{way.x} * corners_[i].y - std::int64_t{way.y} * corners_[i].x;
        corner = farther >= reach ? i : corner;
        reach = std::max(farther, reach);
    }
    return {{nearest(-dy * scale), nearest(dx * scale)}, corner};
}

Side Pen::opposite(Side const& side) const {
    std::size_t const half = corners_.size() / 2;
    return {-side.offset, side.corner < half ? side.corner + half : side.corner - half};
}

}
