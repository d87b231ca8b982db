#include "drawing/Strokes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace drawing {

namespace {

constexpr std::int32_t pixel = 256;     // steps
constexpr std::int32_t lineCount = 15;  // lines of samples in a row of pixels
constexpr int moreBits = 32;

// Farther away from the page than this many pixels, polylines are cut off: then no product below overflows.
constexpr double farthest = 1 << 20;

bool isFar(Point<2> const& p) { return !(std::max(std::fabs(p.x()), std::fabs(p.y())) <= farthest); }

/// Keeps the part of a segment that is not far away; false when there is none.
bool cutOff(Point<2>& from, Point<2>& to) {
    Vector<2> const way = to - from;
    double begin = 0, end = 1;
    for (auto const& [start, length] : {std::pair{from.x(), way.x()}, std::pair{from.y(), way.y()}}) {
        if (length == 0 && std::fabs(start) > farthest) return false;
        double const a = (-farthest - start) / length, b = (farthest - start) / length;
        if (length == 0) continue;
        begin = std::max(begin, std::min(a, b));
        end = std::min(end, std::max(a, b));
    }
    if (!(begin <= end)) return false;
    Point<2> const origin = from;
    if (begin > 0) from = origin + way * begin;
    if (end < 1) to = origin + way * end;
    return true;
}

/// To the nearest whole number; half of one goes up.
std::int32_t nearest(double value) {
    auto const truncated = static_cast<std::int32_t>(value + 0.5);
    return truncated - (truncated > value + 0.5 ? 1 : 0);
}

/// The first line of samples whose middle is not above a place.
int lineAt(std::int32_t y) { return static_cast<int>((std::int64_t{y} * lineCount + pixel / 2) >> 8); }

std::int64_t whole(std::int64_t x) { return (x + (std::int64_t{1} << (moreBits - 1))) >> moreBits; }

std::int64_t quotient(std::int64_t numerator, std::int64_t denominator) {
    return static_cast<std::int64_t>(static_cast<double>(numerator) * 4294967296.0 / static_cast<double>(denominator));
}

/// Two of a pixel's channels: alpha parts of 255 of the upper ones, and the rest of the lower ones, rounded.
std::uint32_t blend(std::uint32_t upper, std::uint32_t lower, std::uint32_t alpha) {
    std::uint32_t const sum = (upper & 0xFF00FF) * alpha + (lower & 0xFF00FF) * (255 - alpha) + 0x800080;
    return ((sum + ((sum >> 8) & 0xFF00FF)) >> 8) & 0xFF00FF;
}

}

Strokes::Strokes(Band const& band, double width)
    : band_{band},
      radius_{width / 2 * pixel},
      begins_(static_cast<std::size_t>(band.height), -1),
      cells_(static_cast<std::size_t>(band.width) + 2, Cell{0, 0}) {
    // The pen's sides keep within a tenth of a pixel of the circle.
    double const apart = std::acos(std::max(1 - 0.1 / (width / 2), 0.0));
    int const half = std::max(2, static_cast<int>(std::ceil(std::numbers::pi / apart)));
    for (int i = 0; i < 2 * half; ++i) {
        double const angle = -std::numbers::pi * i / half;
        pen_.push_back({nearest(radius_ * std::cos(angle)), nearest(radius_ * std::sin(angle))});
    }
}

void Strokes::draw(std::span<Point<2> const> points, std::uint32_t rgb) {
    places_.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        bool const ends = isFar(points[i]), begins = i != 0 && isFar(points[i - 1]);
        if (!ends && !begins) {
            add(points[i]);
            continue;
        }
        if (i == 0) continue;
        // What is cut off lies outside of any page, and so do the places where the polyline falls into parts.
        Point<2> from = points[i - 1], to = points[i];
        bool const isSeen = cutOff(from, to);
        if (begins || !isSeen) fill(rgb);
        if (begins && isSeen) add(from);
        if (isSeen) add(to);
        if (ends && isSeen) fill(rgb);
    }
    fill(rgb);
}

void Strokes::add(Point<2> const& p) {
    Place const place{nearest(p.x() * pixel), nearest(p.y() * pixel) - band_.top * pixel};
    if (places_.empty() || place != places_.back()) places_.push_back(place);
}

/// Draws the polyline that has been added.
void Strokes::fill(std::uint32_t rgb) {
    if (places_.empty()) return;
    if (places_.size() == 1) places_.push_back(places_[0] + Place{1, 0});
    addOutline();
    fillOutline(rgb);
    places_.clear();
}

/// From a segment to its right side, y downwards.
Strokes::Place Strokes::offset(Place const& from, Place const& to) const {
    double const dx = to.x - from.x, dy = to.y - from.y, scale = radius_ / std::sqrt(dx * dx + dy * dy);
    return {nearest(-dy * scale), nearest(dx * scale)};
}

/// Along the right sides of the segments, and back along the left ones.
void Strokes::addOutline() {
    std::vector<Place> const& places = places_;
    edges_.clear();
    firstRow_ = band_.height;
    lastRow_ = -1;
    Place const first = offset(places[0], places[1]);
    Place right = first;
    for (std::size_t i = 1;; ++i) {
        addEdge(places[i - 1] + right, places[i] + right);
        addEdge(places[i] - right, places[i - 1] - right);
        if (i + 1 == places.size()) break;
        Place const next = offset(places[i], places[i + 1]);
        addJoin(places[i], right, next);
        right = next;
    }
    addFan(places.back(), right, -right);
    addFan(places.front(), -first, first);
}

void Strokes::addJoin(Place const& at, Place const& in, Place const& out) {
    bool const rightwards = std::int64_t{in.x} * out.y - std::int64_t{in.y} * out.x >= 0;
    if (rightwards) {
        addEdge(at + in, at);
        addEdge(at, at + out);
        addFan(at, -out, -in);
    } else {
        addFan(at, in, out);
        addEdge(at - out, at);
        addEdge(at, at - in);
    }
}

/// From one offset to another, by way of the pen's corners between them. Both turn anticlockwise on the page.
void Strokes::addFan(Place const& around, Place const& from, Place const& to) {
    auto const isBetween = [&](Place const& p) {
        return std::int64_t{from.x} * p.y < std::int64_t{from.y} * p.x &&
               std::int64_t{to.x} * p.y > std::int64_t{to.y} * p.x;
    };
    std::size_t const count = pen_.size();
    std::size_t i = 0;
    while (i < count && isBetween(pen_[i])) ++i;  // the corners between them may lie around the list's end
    Place at = around + from;
    for (std::size_t n = 0; n < count; ++n) {
        i = i + 1 < count ? i + 1 : 0;
        if (!isBetween(pen_[i])) continue;
        Place const next = around + pen_[i];
        addEdge(at, next);
        at = next;
    }
    addEdge(at, around + to);
}

void Strokes::addEdge(Place const& from, Place const& to) {
    bool const down = to.y > from.y;
    Place const& upper = down ? from : to;
    Place const& lower = down ? to : from;
    int const first = std::max(lineAt(upper.y), 0), last = std::min(lineAt(lower.y), band_.height * lineCount);
    if (first >= last) return;

    // A line of samples runs through the middle of its share of the row.
    std::int64_t const dx = lower.x - upper.x, dy = std::int64_t{lower.y - upper.y} * lineCount;
    std::int64_t const toFirst = (2 * std::int64_t{first} + 1) * pixel - std::int64_t{upper.y} * lineCount * 2;
    std::int64_t const x = (std::int64_t{upper.x} << moreBits) + (dx == 0 ? 0 : quotient(dx * toFirst, 2 * dy));
    std::int64_t const step = dx == 0 ? 0 : quotient(dx * pixel, dy);
    int const row = first / lineCount;
    int& begin = begins_[static_cast<std::size_t>(row)];
    edges_.push_back({x, step, first, last, down ? 1 : -1, begin});
    begin = static_cast<int>(edges_.size()) - 1;
    firstRow_ = std::min(firstRow_, row);
    lastRow_ = std::max(lastRow_, (last - 1) / lineCount);
}

void Strokes::fillOutline(std::uint32_t rgb) {
    active_.clear();
    for (int row = firstRow_; row <= lastRow_; ++row) {
        int& begin = begins_[static_cast<std::size_t>(row)];
        for (; begin >= 0; begin = edges_[static_cast<std::size_t>(begin)].next) active_.push_back(begin);
        firstCell_ = band_.width + 1;
        lastCell_ = 0;
        if (!measureRow(row)) sampleRow(row);
        std::erase_if(active_,
                      [&](int i) { return edges_[static_cast<std::size_t>(i)].last <= (row + 1) * lineCount; });
        blendRow(row, rgb);
    }
}

/// False, and nothing done, when an edge begins or ends in the row, or two of them meet there.
bool Strokes::measureRow(int row) {
    int const first = row * lineCount;
    for (int const i : active_) {
        Edge const& edge = edges_[static_cast<std::size_t>(i)];
        if (edge.first > first || edge.last < first + lineCount) return false;
    }
    auto const isLeft = [&](int a, int b) {
        return edges_[static_cast<std::size_t>(a)].x < edges_[static_cast<std::size_t>(b)].x;
    };
    std::sort(active_.begin(), active_.end(), isLeft);
    std::int64_t before = std::numeric_limits<std::int64_t>::min();
    for (int const i : active_) {
        Edge const& edge = edges_[static_cast<std::size_t>(i)];
        std::int64_t const below = whole(edge.x + edge.step * lineCount);
        if (below < before) return false;
        before = below;
    }
    int winding = 0;
    for (int const i : active_) {
        Edge& edge = edges_[static_cast<std::size_t>(i)];
        bool const begins = winding == 0;
        winding += edge.sign;
        if (begins || winding == 0) addTrapezoid(edge, begins ? 1 : -1);
        edge.x += edge.step * lineCount;
    }
    return true;
}

inline void Strokes::addSpan(std::int64_t from, std::int64_t to) {
    // One cell to the left and one to the right of the band stand for all that lies outside.
    std::int64_t const end = std::int64_t{band_.width} * pixel;
    auto const left = static_cast<std::uint32_t>(std::clamp<std::int64_t>(from, -pixel, end) + pixel);
    auto const right = static_cast<std::uint32_t>(std::clamp<std::int64_t>(to, -pixel, end) + pixel);
    Cell& first = cells_[left / 256];
    first.covered += 1;
    first.beside += static_cast<std::int32_t>(left % 256 * 2);
    Cell& last = cells_[right / 256];
    last.covered -= 1;
    last.beside -= static_cast<std::int32_t>(right % 256 * 2);
    firstCell_ = std::min(firstCell_, static_cast<int>(left / 256));
    lastCell_ = std::max(lastCell_, static_cast<int>(right / 256));
}

void Strokes::sampleRow(int row) {
    // Where edges cross the lines, and in the two bits below the edges' directions.
    std::size_t const room = active_.size();
    std::size_t counts[lineCount] = {};
    crossings_.resize(room * lineCount);
    int const top = row * lineCount;
    for (int const i : active_) {
        Edge& edge = edges_[static_cast<std::size_t>(i)];
        auto const first = static_cast<std::size_t>(std::max(edge.first - top, 0));
        auto const last = static_cast<std::size_t>(std::min(edge.last - top, lineCount));
        std::int64_t x = edge.x;
        std::int64_t* crossings = crossings_.data() + first * room;
        for (std::size_t line = first; line < last; ++line, crossings += room, x += edge.step) {
            crossings[counts[line]++] = whole(x) * 4 + edge.sign + 1;
        }
        edge.x = x;
    }
    for (std::size_t line = 0; line < lineCount; ++line) {
        std::int64_t* const begin = crossings_.data() + line * room;
        if (counts[line] == 2) {  // nearly always
            addSpan(std::min(begin[0], begin[1]) >> 2, std::max(begin[0], begin[1]) >> 2);
            continue;
        }
        std::sort(begin, begin + counts[line]);
        std::int64_t from = 0, winding = 0;
        for (std::int64_t const crossing : std::span{begin, counts[line]}) {
            if (winding == 0) from = crossing >> 2;
            winding += (crossing & 3) - 1;
            if (winding == 0) addSpan(from, crossing >> 2);
        }
    }
}

/// The cell of a column, or that for all the columns to the left or to the right of the band.
Strokes::Cell& Strokes::cell(std::int64_t column) {
    auto const i = static_cast<int>(std::clamp<std::int64_t>(column, -1, band_.width) + 1);
    firstCell_ = std::min(firstCell_, i);
    lastCell_ = std::max(lastCell_, i);
    return cells_[static_cast<std::size_t>(i)];
}

/// What lies to the right of an edge in a whole row, in lines of samples for each column.
void Strokes::addTrapezoid(Edge const& edge, int sign) {
    // From the middle of the first line to the top of the row; half of an odd number of steps is rounded towards 0.
    std::int64_t const steps = edge.step / (std::int64_t{1} << moreBits), rest = edge.step - (steps << moreBits);
    std::int64_t const top = edge.x - ((steps / 2) << moreBits) - rest / 2, bottom = top + edge.step * lineCount;
    std::int64_t const left = std::min(top, bottom), right = std::max(top, bottom);
    auto const within = [](std::int64_t x) { return static_cast<std::int32_t>((x >> moreBits) & 255); };
    auto const add = [&](std::int64_t column, std::int32_t lines, std::int32_t beside) {
        Cell& at = cell(column);
        at.covered += sign * lines;
        at.beside += sign * lines * beside;
    };
    std::int64_t const first = left >> (moreBits + 8), last = right >> (moreBits + 8);
    if (first == last) return add(first, lineCount, within(left) + within(right));
    std::int32_t done = 0;
    // Columns outside of the band need not be told apart.
    for (std::int64_t column = std::max<std::int64_t>(first, -1); column < std::min<std::int64_t>(last, band_.width);
         ++column) {
        std::int64_t const border = (column + 1) << (moreBits + 8);
        auto const lines = static_cast<std::int32_t>((border - left) * lineCount / (right - left));
        add(column, lines - done, column == first ? pixel + within(left) : pixel);
        done = lines;
    }
    add(last, lineCount - done, within(right));
}

void Strokes::blendRow(int row, std::uint32_t rgb) {
    auto* const pixels = reinterpret_cast<std::uint32_t*>(band_.pixels) + std::ptrdiff_t{row} * band_.width;
    std::int32_t covered = 0;
    for (int i = firstCell_; i <= lastCell_; ++i) {
        Cell& cell = cells_[static_cast<std::size_t>(i)];
        covered += cell.covered;
        std::int32_t const area = covered * 2 * pixel - cell.beside;  // of 15 * 512
        cell = {0, 0};
        auto const alpha = static_cast<std::uint32_t>((area * 17 + 256) >> 9);
        if (alpha == 0 || i == 0 || i > band_.width) continue;
        std::uint32_t& lower = pixels[i - 1];
        lower = alpha == 255 ? rgb : blend(rgb, lower, alpha) | blend(rgb >> 8, lower >> 8, alpha) << 8;
    }
}

}
