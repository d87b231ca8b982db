#include "drawing/Strokes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

namespace drawing {

namespace {

constexpr std::int32_t pixel = 256;     // steps
constexpr std::int32_t lineCount = 15;  // lines of samples in a row of pixels
constexpr int moreBits = 32;
constexpr std::int64_t oneLine = std::int64_t{1} << 32;  // of a cell
constexpr int mostRows = 16;                             // that are sampled at once

// Farther away from the page than this many pixels, polylines are cut off: then no product below overflows. (The largest
// one is the step of an edge that falls by 1/256 of a pixel all the way from left to right: 2^26 * 256 / 15 * 2^32.)
constexpr double farthest = 1 << 17;

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
    // The floor of the sum: a cast, which is fast, cuts towards zero, and the line behind it corrects what is below zero.
    auto const truncated = static_cast<std::int32_t>(value + 0.5);  // NOLINT(bugprone-incorrect-roundings)
    return truncated - (truncated > value + 0.5 ? 1 : 0);
}

/// The first line of samples whose middle is not above a place.
int lineAt(std::int32_t y) { return static_cast<int>((std::int64_t{y} * lineCount + pixel / 2) >> 8); }

std::int64_t whole(std::int64_t x) { return (x + (std::int64_t{1} << (moreBits - 1))) >> moreBits; }

/// By how much an edge moves to the right from one line of samples to the next, with 32 more bits. Not for level edges.
std::int64_t stepOf(std::int32_t dx, std::int32_t dy) {
    return static_cast<std::int64_t>(dx * (pixel * 4294967296.0) / (static_cast<double>(dy) * lineCount));
}

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

}

Strokes::Strokes(Band const& band, double width)
    : band_{band},
      radius_{width / 2 * pixel},
      rows_(static_cast<std::size_t>(band.height)),
      ends_(mostRows * lineCount),
      cells_(static_cast<std::size_t>(band.width) + 2, Cell{0}),
      firstCell_{band.width + 1} {
    // The pen's sides keep within a tenth of a pixel of the circle.
    double const apart = std::acos(std::max(1 - 0.1 / (width / 2), 0.0));
    int const half = std::max(2, static_cast<int>(std::ceil(std::numbers::pi / apart)));
    for (int i = 0; i < 2 * half; ++i) {
        double const angle = -std::numbers::pi * i / half;
        pen_.push_back({nearest(radius_ * std::cos(angle)), nearest(radius_ * std::sin(angle))});
    }
    for (std::size_t i = 0; i < pen_.size(); ++i) {
        Place const side = pen_[i] - pen_[i > 0 ? i - 1 : pen_.size() - 1];
        penSteps_.push_back(side.y != 0 ? stepOf(side.x, side.y) : 0);
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
        if (begins) fill(rgb);
        if (begins && isSeen) add(from);
        if (isSeen) add(to);
        if (ends) fill(rgb);
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

/// The right side of a segment, y downwards.
Strokes::Side Strokes::rightSide(Place const& from, Place const& to) const {
    Place const way = to - from;
    double const dx = way.x, dy = way.y, scale = radius_ / std::sqrt(dx * dx + dy * dy);
    std::size_t corner = 0;
    std::int64_t reach = std::numeric_limits<std::int64_t>::min();
    for (std::size_t i = 0; i < pen_.size(); ++i) {
        std::int64_t const farther = std::int64_t{way.x} * pen_[i].y - std::int64_t{way.y} * pen_[i].x;
        corner = farther >= reach ? i : corner;
        reach = std::max(farther, reach);
    }
    return {{nearest(-dy * scale), nearest(dx * scale)}, corner};
}

/// The left side of the same segment. The pen has an even number of corners.
Strokes::Side Strokes::opposite(Side const& side) const {
    std::size_t const half = pen_.size() / 2;
    return {-side.offset, side.corner < half ? side.corner + half : side.corner - half};
}

/// Along the right sides of the segments, and back along the left ones.
void Strokes::addOutline() {
    std::vector<Place> const& places = places_;
    edges_.clear();
    firstRow_ = band_.height;
    lastRow_ = -1;
    Side const first = rightSide(places[0], places[1]);
    Side right = first;
    for (std::size_t i = 1;; ++i) {
        addEdge(places[i - 1] + right.offset, places[i] + right.offset);
        addEdge(places[i] - right.offset, places[i - 1] - right.offset);
        if (i + 1 == places.size()) break;
        Side const next = rightSide(places[i], places[i + 1]);
        addJoin(places[i], right, next);
        right = next;
    }
    addFan(places.back(), right, opposite(right), true);
    addFan(places.front(), opposite(first), first, true);
}

void Strokes::addJoin(Place const& at, Side const& in, Side const& out) {
    Place const& before = in.offset;
    Place const& after = out.offset;
    bool const rightwards = std::int64_t{before.x} * after.y - std::int64_t{before.y} * after.x >= 0;
    // At right turns the fan leaves out the corners at its ends: then the pictures are those of Cairo, as measured.
    if (rightwards) {
        addEdge(at + before, at);
        addEdge(at, at + after);
        addFan(at, opposite(out), opposite(in), false);
    } else {
        addFan(at, in, out, true);
        addEdge(at - after, at);
        addEdge(at, at - before);
    }
}

/// From one side to another, anticlockwise on the page, by way of the pen's corners between those that reach farthest
/// there, with or without these two.
void Strokes::addFan(Place const& around, Side const& from, Side const& to, bool withEnds) {
    auto const next = [&](std::size_t i) { return i + 1 < pen_.size() ? i + 1 : 0; };
    Place at = around + from.offset;
    if (from.corner != to.corner) {
        std::size_t const end = withEnds ? next(to.corner) : to.corner;
        std::size_t const begin = withEnds ? from.corner : next(from.corner);
        for (std::size_t i = begin; i != end; i = next(i)) {
            addEdge(at, around + pen_[i], i != begin ? &penSteps_[i] : nullptr);
            at = around + pen_[i];
        }
    }
    addEdge(at, around + to.offset);
}

inline void Strokes::addEdge(Place const& from, Place const& to, std::int64_t const* knownStep) {
    bool const down = to.y > from.y;
    Place const& upper = down ? from : to;
    int const first = std::max(lineAt(std::min(from.y, to.y)), 0);
    int const last = std::min(lineAt(std::max(from.y, to.y)), band_.height * lineCount);
    if (first >= last) return;

    // Lines of samples run through the middle of their shares of the row; toFirst counts 512 from one line to the next.
    std::int64_t const step = knownStep != nullptr ? *knownStep : stepOf(to.x - from.x, to.y - from.y);
    std::int64_t const toFirst = (2 * std::int64_t{first} + 1) * pixel - std::int64_t{upper.y} * lineCount * 2;
    auto const aside = static_cast<std::int64_t>(static_cast<double>(step) * static_cast<double>(toFirst) / 512);
    int const firstRow = first / lineCount, lastRow = (last - 1) / lineCount;
    edges_.push_back({(std::int64_t{upper.x} << moreBits) + aside, step, first, last, down ? 1 : -1, -1});
    rows_[static_cast<std::size_t>(firstRow)].isBroken |= first != firstRow * lineCount;
    rows_[static_cast<std::size_t>(lastRow)].isBroken |= last != (lastRow + 1) * lineCount;
    firstRow_ = std::min(firstRow_, firstRow);
    lastRow_ = std::max(lastRow_, lastRow);
}

void Strokes::fillOutline(std::uint32_t rgb) {
    if (firstRow_ > lastRow_) return;
    std::span const rows{rows_.data() + firstRow_, rows_.data() + lastRow_ + 1};
    active_.resize(edges_.size());
    // Nearly all outlines of a dense drawing lie in a few rows that are all broken: these are sampled at once.
    if (rows.size() <= mostRows && std::ranges::all_of(rows, [](Row const& row) { return row.isBroken; })) {
        std::iota(active_.begin(), active_.end(), 0);
        std::ranges::fill(rows, Row{});
        return sampleRows(firstRow_, lastRow_ + 1, rgb);
    }
    active_.clear();
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        Row& begins = rows_[static_cast<std::size_t>(edges_[i].first / lineCount)];
        edges_[i].next = std::exchange(begins.begin, static_cast<int>(i));
    }
    for (int row = firstRow_, end; row <= lastRow_; row = end) {
        bool const isBroken = rows_[static_cast<std::size_t>(row)].isBroken;
        int const last = isBroken ? std::min(lastRow_ + 1, row + mostRows) : row + 1;
        for (end = row; end < last && rows_[static_cast<std::size_t>(end)].isBroken == isBroken; ++end) {
            Row& at = rows_[static_cast<std::size_t>(end)];
            for (int i = at.begin; i >= 0; i = edges_[static_cast<std::size_t>(i)].next) active_.push_back(i);
            at = {};
        }
        if (!isBroken && measureRow(row)) {
            blendRow(row, rgb);
        } else {
            sampleRows(row, end, rgb);
        }
        if (end > lastRow_) break;
        std::erase_if(active_, [&](int i) { return edges_[static_cast<std::size_t>(i)].last <= end * lineCount; });
    }
}

/// False, and nothing done, when two edges meet in a row that all of them cross from top to bottom.
bool Strokes::measureRow(int row) {
    int const first = row * lineCount;
    auto const at = [&](int i, int line) { return edges_[static_cast<std::size_t>(i)].at(line); };
    std::sort(active_.begin(), active_.end(), [&](int a, int b) { return at(a, first) < at(b, first); });
    std::int64_t before = std::numeric_limits<std::int64_t>::min();
    for (int const i : active_) {
        std::int64_t const below = whole(at(i, first + lineCount));
        if (below < before) return false;
        before = below;
    }
    int winding = 0;
    for (int const i : active_) {
        Edge const& edge = edges_[static_cast<std::size_t>(i)];
        bool const begins = winding == 0;
        winding += edge.sign;
        if (begins || winding == 0) addTrapezoid(edge, edge.at(first), begins ? 1 : -1);
    }
    return true;
}

inline void Strokes::addSpan(std::int32_t from, std::int32_t to) {
    auto const left = static_cast<std::uint32_t>(from + pixel), right = static_cast<std::uint32_t>(to + pixel);
    Cell* const cells = cells_.data();
    cells[left / 256] += oneLine + left % 256 * 2;
    cells[right / 256] -= oneLine + right % 256 * 2;
    firstCell_ = std::min(firstCell_, static_cast<int>(left / 256));
    lastCell_ = std::max(lastCell_, static_cast<int>(right / 256));
}

/// The spans of a line of samples that four edges cross: a stroke with a join. Without branches that depend on the order.
inline void Strokes::addSpansOfFour(std::int32_t const* crossings, std::ptrdiff_t stride) {
    std::int32_t const w = crossings[0], x = crossings[stride], y = crossings[2 * stride], z = crossings[3 * stride];
    std::int32_t const first = std::min(std::min(w, x), std::min(y, z)),
                       last = std::max(std::max(w, x), std::max(y, z));
    std::int32_t const p = std::max(std::min(w, x), std::min(y, z)), q = std::min(std::max(w, x), std::max(y, z));
    std::int32_t const second = std::min(p, q), third = std::max(p, q);
    if ((first & 3) + (second & 3) == 2) {  // one direction and the other
        addSpan(first >> 2, second >> 2);
        addSpan(third >> 2, last >> 2);
    } else {
        addSpan(first >> 2, last >> 2);
    }
}

void Strokes::sampleRows(int row, int end, std::uint32_t rgb) {
    int const count = (end - row) * lineCount;
    crossLines(row * lineCount, count);
    for (int line = 0; row < end; ++row) {
        for (int const below = line + lineCount; line < below; ++line) {
            auto const at = static_cast<std::size_t>(line);
            if (ends_[at] == line + 2 * count) {  // nearly always
                std::int32_t const a = crossings_[at], b = crossings_[at + static_cast<std::size_t>(count)];
                addSpan(std::min(a, b) >> 2, std::max(a, b) >> 2);
            } else if (ends_[at] == line + 4 * count) {
                addSpansOfFour(crossings_.data() + line, count);
            } else {
                addSpans(line, ends_[at], count);
            }
        }
        blendRow(row, rgb);
    }
}

/// Where the active edges cross lines of samples, and in the two bits below the edges' directions.
void Strokes::crossLines(int first, int count) {
    if (crossings_.size() < active_.size() * static_cast<std::size_t>(count)) {
        crossings_.resize(active_.size() * static_cast<std::size_t>(count));
    }
    if (sorted_.size() < active_.size()) sorted_.resize(active_.size());
    std::iota(ends_.begin(), ends_.begin() + count, 0);
    // One cell to the left and one to the right of the band stand for all that lies outside.
    std::int64_t const leftmost = -pixel, rightmost = std::int64_t{band_.width} * pixel;
    std::int32_t* const crossings = crossings_.data();
    for (int const i : active_) {
        Edge const& edge = edges_[static_cast<std::size_t>(i)];
        int const begin = std::max(edge.first - first, 0), end = std::min(edge.last - first, count);
        std::int64_t x = edge.at(first + begin);
        std::int64_t const step = edge.step;
        std::int32_t const direction = edge.sign + 1;
        for (int* line = ends_.data() + begin; line != ends_.data() + end; ++line, x += step) {
            auto const place = static_cast<std::int32_t>(std::clamp(whole(x), leftmost, rightmost));
            crossings[*line] = place * 4 + direction;
            *line += count;
        }
    }
}

/// The spans of a line of samples that any number of edges cross.
void Strokes::addSpans(int line, int end, int stride) {
    std::int32_t* const sorted = sorted_.data();
    std::int32_t* last = sorted;
    for (int i = line; i < end; i += stride) *last++ = crossings_[static_cast<std::size_t>(i)];
    std::sort(sorted, last);
    std::int32_t from = 0, winding = 0;
    for (std::int32_t const crossing : std::span{sorted, last}) {
        if (winding == 0) from = crossing >> 2;
        winding += (crossing & 3) - 1;
        if (winding == 0) addSpan(from, crossing >> 2);
    }
}

/// To the cell of a column, or to that for all the columns to the left or to the right of the band.
void Strokes::addToCell(std::int64_t column, std::int32_t lines, std::int32_t beside) {
    auto const i = static_cast<int>(std::clamp<std::int64_t>(column, -1, band_.width) + 1);
    firstCell_ = std::min(firstCell_, i);
    lastCell_ = std::max(lastCell_, i);
    cells_[static_cast<std::size_t>(i)] += lines * oneLine + std::int64_t{lines} * beside;
}

/// What lies to the right of an edge in a whole row, in lines of samples for each column.
void Strokes::addTrapezoid(Edge const& edge, std::int64_t x, int sign) {
    // From the middle of the first line to the top of the row; half of an odd number of steps is rounded towards 0.
    std::int64_t const steps = edge.step / (std::int64_t{1} << moreBits), rest = edge.step - (steps << moreBits);
    std::int64_t const top = x - ((steps / 2) << moreBits) - rest / 2, bottom = top + edge.step * lineCount;
    std::int64_t const left = std::min(top, bottom), right = std::max(top, bottom);
    auto const within = [](std::int64_t at) { return static_cast<std::int32_t>((at >> moreBits) & 255); };
    auto const add = [&](std::int64_t column, std::int32_t lines, std::int32_t beside) {
        addToCell(column, sign * lines, beside);
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
    std::uint64_t const upper = apart(rgb);
    std::int64_t covered = 0;
    for (int i = firstCell_; i <= lastCell_; ++i) {
        Cell& cell = cells_[static_cast<std::size_t>(i)];
        auto const beside = static_cast<std::int32_t>(cell);
        covered += (cell - beside) >> 32;
        cell = 0;
        if (i == 0 || i > band_.width) continue;
        auto const area = static_cast<std::int32_t>(covered) * 2 * pixel - beside;  // of 15 * 512
        // 15 * 17 is 255: the whole area gives 255 parts. 256, half of 512, rounds.
        auto const alpha = static_cast<std::uint32_t>((area * 17 + 256) >> 9);
        pixels[i - 1] = blend(upper, apart(pixels[i - 1]), alpha);
    }
    firstCell_ = band_.width + 1;
    lastCell_ = 0;
}

}
