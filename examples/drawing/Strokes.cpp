#include "drawing/Strokes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace drawing {

namespace {

// To the right and to the left of all that is drawn. All bytes of each are the same, so that it fills memory at once.
constexpr std::int32_t farRight = 0x3F3F3F3F, farLeft = -0x3F3F3F40;
constexpr std::int64_t halfStep = std::int64_t{1} << (moreBits - 1);

// Farther away from the page than this many pixels, polylines are cut off: then no product below overflows. (The largest
// one is the step of an edge that falls by 1/256 of a pixel all the way from left to right: 2^26 * 256 / 15 * 2^32.)
constexpr double farthest = 1 << 17;

bool isFar(Point<2> const& p) { return !(std::fabs(p.x()) <= farthest && std::fabs(p.y()) <= farthest); }

/// Keeps the part of a segment that is not far away. False when there is none, or when an end is no place at all.
bool cutOff(Point<2>& from, Point<2>& to) {
    Vector<2> const way = to - from;
    if (!way.isFinite()) return false;
    double begin = 0, end = 1;
    for (auto const& [start, length] : {std::pair{from.x(), way.x()}, std::pair{from.y(), way.y()}}) {
        if (length == 0 && std::fabs(start) > farthest) return false;
        if (length == 0) continue;
        double const a = (-farthest - start) / length, b = (farthest - start) / length;
        begin = std::max(begin, std::min(a, b));
        end = std::min(end, std::max(a, b));
    }
    if (!(begin <= end)) return false;
    Point<2> const origin = from;
    if (begin > 0) from = origin + way * begin;
    if (end < 1) to = origin + way * end;
    // The ends of a very long segment are rounded by more than the page.
    for (Point<2>* const p : {&from, &to}) {
        *p = {std::clamp(p->x(), -farthest, farthest), std::clamp(p->y(), -farthest, farthest)};
    }
    return true;
}

}

Strokes::Strokes(Band const& band, double width)
    : band_{band}, pen_{width}, rows_(static_cast<std::size_t>(band.height)), coverage_{band.width} {}

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
    Place const place{nearest(p.x() * stepsPerPixel), nearest(p.y() * stepsPerPixel) - band_.top * stepsPerPixel};
    if (places_.empty() || place != places_.back()) places_.push_back(place);
}

/// Draws the polyline that has been added.
void Strokes::fill(std::uint32_t rgb) {
    if (places_.empty()) return;
    if (places_.size() == 1) places_.push_back(places_[0] + Place{1, 0});
    sides_.clear();
    chains_.clear();
    edges_.clear();
    boundCount_ = 0;
    for (std::size_t i = 1; i < places_.size(); ++i) sides_.push_back(pen_.rightSide(places_[i - 1], places_[i]));
    addChains();
    if (!chains_.empty()) cover(rgb);
    places_.clear();
}

/// Cuts the polyline where it turns from falling to rising or back.
void Strokes::addChains() {
    for (std::size_t first = 0, last; first < sides_.size(); first = last) {
        bool rises = false, falls = false;
        for (last = first; last < sides_.size(); ++last) {
            rises |= places_[last + 1].y < places_[last].y;
            falls |= places_[last + 1].y > places_[last].y;
            if (rises && falls) break;
        }
        if (beginChain(first, last)) addChain(first, last);
    }
}

/// Makes room for the intervals of a chain between two places. False when it lies above or below the band.
bool Strokes::beginChain(std::size_t from, std::size_t to) {
    auto const [top, bottom] = std::minmax(places_[from].y, places_[to].y);
    int const first = std::max(lineBelow(top - pen_.reach()), 0);
    int const end = std::min(lineBelow(bottom + pen_.reach()), band_.height * linesPerRow);
    if (first >= end) return false;
    std::int32_t left = places_[from].x, right = left;
    for (std::size_t i = from + 1; i <= to; ++i) {
        left = std::min(left, places_[i].x);
        right = std::max(right, places_[i].x);
    }
    Columns const columns{(left - pen_.reach()) >> 8, ((right + pen_.reach()) >> 8) + 1};
    chains_.push_back({first / linesPerRow, (end - 1) / linesPerRow + 1, columns, boundCount_});
    // The last row is read with as many lines as an Intervals takes, which is one more.
    Chain const& chain = chains_.back();
    auto const count = static_cast<std::size_t>((chain.endRow - chain.firstRow - 1) * linesPerRow + lanes);
    boundCount_ += count;
    if (lefts_.size() < boundCount_) {
        lefts_.resize(boundCount_);
        rights_.resize(boundCount_);
    }
    std::memset(lefts_.data() + chain.begin, farRight & 0xFF, count * sizeof farRight);
    std::memset(rights_.data() + chain.begin, farLeft & 0xFF, count * sizeof farLeft);
    return true;
}

/// The outline of the polyline between two places: along the right sides of its segments, and back along the left ones.
void Strokes::addChain(std::size_t from, std::size_t to) {
    bool const falls = places_[from].y < places_[to].y;
    for (std::size_t i = from; i < to; ++i) {
        Place const& aside = sides_[i].offset;
        Place const way = places_[i + 1] - places_[i];
        std::int64_t const step = way.y != 0 ? stepOf(way) : 0;
        addEdge(places_[i] + aside, places_[i + 1] + aside, &step);
        addEdge(places_[i + 1] - aside, places_[i] - aside, &step);
        if (i > from) addJoin(places_[i], sides_[i - 1], sides_[i]);
    }
    // The join of two chains belongs to the first one. Both are closed there, within the area of the polyline.
    if (from == 0) {
        addEnd(places_[from], pen_.opposite(sides_[from]), falls);
    } else {
        addBound(edgeBetween(places_[from] - sides_[from].offset, places_[from] + sides_[from].offset));
    }
    if (to == sides_.size()) {
        addEnd(places_[to], sides_[to - 1], !falls);
    } else {
        addJoin(places_[to], sides_[to - 1], sides_[to]);
        addBound(edgeBetween(places_[to] + sides_[to].offset, places_[to]));
        addBound(edgeBetween(places_[to], places_[to] - sides_[to].offset));
    }
}

/// A round end, from a side to the opposite one.
void Strokes::addEnd(Place const& at, Side const& side, bool pointsUp) {
    Side const other = pen_.opposite(side);
    if (!pen_.isFine()) return addFan(at, side, other, true);
    addPen(at);
    // The sides of a nearly level segment lie beyond the pen. Those of another one leave it by less than is seen.
    if (std::abs(side.offset.y) > -pen_.top()) {
        addEdge(at + side.offset, at + pen_.corner(side.corner));
        addEdge(at + pen_.corner(other.corner), at + other.offset);
    }
    // Each row that the end reaches into has a corner of the pen.
    std::int32_t const inner = std::abs(pen_.corner(side.corner).y), outer = -pen_.top();
    int const first = lineBelow(at.y - (pointsUp ? outer : inner)), end = lineBelow(at.y + (pointsUp ? inner : outer));
    for (int row = std::max(first, 0) / linesPerRow; row < band_.height && row * linesPerRow < end; ++row) {
        rows_[static_cast<std::size_t>(row)].isBroken = true;
    }
}

/// The intervals that a fine pen covers.
void Strokes::addPen(Place const& at) {
    int const first = lineBelow(at.y + pen_.top());
    auto const [begin, end] = linesWithin(first, lineBelow(at.y - pen_.top()));
    if (begin >= end) return;
    std::int32_t const* const halves = pen_.halfWidths(at.y + pen_.top()).data() + (begin - first);
    std::int32_t* const lefts = lefts_.data() + indexOf(chains_.back(), begin);
    std::int32_t* const rights = rights_.data() + indexOf(chains_.back(), begin);
    for (int i = 0; i < end - begin; ++i) {
        lefts[i] = std::min(lefts[i], at.x - halves[i]);
        rights[i] = std::max(rights[i], at.x + halves[i]);
    }
}

void Strokes::addJoin(Place const& at, Side const& in, Side const& out) {
    Place const& before = in.offset;
    Place const& after = out.offset;
    bool const rightwards = std::int64_t{before.x} * after.y - std::int64_t{before.y} * after.x >= 0;
    // At right turns the fan leaves out the corners at its ends: then the pictures are those of Cairo, as measured.
    if (rightwards) {
        addEdge(at + before, at);
        addEdge(at, at + after);
        addFan(at, pen_.opposite(out), pen_.opposite(in), false);
    } else {
        addFan(at, in, out, true);
        addEdge(at - after, at);
        addEdge(at, at - before);
    }
}

/// From one side to another, anticlockwise on the page, by way of the pen's corners between those that reach farthest
/// there, with or without these two.
void Strokes::addFan(Place const& around, Side const& from, Side const& to, bool withEnds) {
    Place at = around + from.offset;
    if (from.corner != to.corner) {
        std::size_t const end = withEnds ? pen_.next(to.corner) : to.corner;
        for (std::size_t i = withEnds ? from.corner : pen_.next(from.corner); i != end; i = pen_.next(i)) {
            addEdge(at, around + pen_.corner(i));
            at = around + pen_.corner(i);
        }
    }
    addEdge(at, around + to.offset);
}

inline Strokes::Edge Strokes::edgeBetween(Place const& from, Place const& to, std::int64_t const* knownStep) {
    bool const falls = to.y > from.y;
    Place const& upper = falls ? from : to;
    int const first = lineBelow(upper.y), end = lineBelow(falls ? to.y : from.y);
    if (first >= end) return {0, 0, first, end, 0, -1};
    std::int64_t const step = knownStep != nullptr ? *knownStep : stepOf(to - from);
    // The first line is counted from above the band, too, so that the edge is the same in all bands.
    auto const aside = static_cast<double>(step) * static_cast<double>(downTo(first, upper.y)) / stepsPerPixel;
    std::int64_t const x = (std::int64_t{upper.x} << moreBits) + static_cast<std::int64_t>(aside);
    return {x, step, first, end, falls ? 1 : -1, -1};
}

/// A part of the whole polyline's outline.
inline void Strokes::addEdge(Place const& from, Place const& to, std::int64_t const* knownStep) {
    Edge const edge = edgeBetween(from, to, knownStep);
    if (edge.sign == 0) return;
    addBound(edge);
    breakRow(edge.first);
    breakRow(edge.end);
    if (edge.firstRow() < std::min(edge.endRow(), band_.height)) edges_.push_back(edge);
}

/// Takes an edge for the intervals of the latest chain. Edges that fall have the area at their right.
inline void Strokes::addBound(Edge const& edge) {
    auto const [begin, end] = linesWithin(edge.first, edge.end);
    if (begin >= end) return;
    std::int64_t x = edge.at(begin) + halfStep;
    if (edge.sign > 0) {
        std::int32_t* const lefts = lefts_.data() + indexOf(chains_.back(), begin);
        for (int i = 0; i < end - begin; ++i, x += edge.step) {
            lefts[i] = std::min(lefts[i], static_cast<std::int32_t>(x >> moreBits));
        }
    } else {
        std::int32_t* const rights = rights_.data() + indexOf(chains_.back(), begin);
        for (int i = 0; i < end - begin; ++i, x += edge.step) {
            rights[i] = std::max(rights[i], static_cast<std::int32_t>(x >> moreBits));
        }
    }
}

/// Notes that an edge begins or ends above a line of samples.
inline void Strokes::breakRow(int line) {
    int const row = line / linesPerRow;
    if (line <= 0 || row >= band_.height || row * linesPerRow == line) return;
    rows_[static_cast<std::size_t>(row)].isBroken = true;
}

/// Those of some lines of samples that lie in the rows of the latest chain.
inline Strokes::Lines Strokes::linesWithin(int first, int end) const {
    Chain const& chain = chains_.back();
    return {std::max(first, chain.firstRow * linesPerRow), std::min(end, chain.endRow * linesPerRow)};
}

std::size_t Strokes::indexOf(Chain const& chain, int line) {
    return chain.begin + static_cast<std::size_t>(line - chain.firstRow * linesPerRow);
}

void Strokes::cover(std::uint32_t rgb) {
    int firstRow = band_.height, endRow = 0;
    for (Chain const& chain : chains_) {
        firstRow = std::min(firstRow, chain.firstRow);
        endRow = std::max(endRow, chain.endRow);
    }
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        Row& begins = rows_[static_cast<std::size_t>(edges_[i].firstRow())];
        edges_[i].next = std::exchange(begins.begin, static_cast<int>(i));
    }
    active_.clear();
    auto* pixels = reinterpret_cast<std::uint32_t*>(band_.pixels) + std::ptrdiff_t{firstRow} * band_.width;
    for (int row = firstRow; row < endRow; ++row, pixels += band_.width) {
        Row& here = rows_[static_cast<std::size_t>(row)];
        for (int i = here.begin; i >= 0; i = edges_[static_cast<std::size_t>(i)].next) active_.push_back(i);
        if (here.isBroken || !measureTrapezoids(row)) measureIntervals(row);
        coverage_.blend(pixels, rgb);
        here = {};
        std::erase_if(active_, [&](int i) { return edges_[static_cast<std::size_t>(i)].endRow() <= row + 1; });
    }
}

/// False, and nothing done, when two edges meet in a row that all of them cross from top to bottom.
bool Strokes::measureTrapezoids(int row) {
    int const first = row * linesPerRow;
    auto const edge = [&](int i) -> Edge const& { return edges_[static_cast<std::size_t>(i)]; };
    std::sort(active_.begin(), active_.end(), [&](int a, int b) { return edge(a).at(first) < edge(b).at(first); });
    std::int64_t before = std::numeric_limits<std::int64_t>::min();
    for (int const i : active_) {
        std::int64_t const below = (edge(i).at(first + linesPerRow) + halfStep) >> moreBits;
        if (below < before) return false;
        before = below;
    }
    int winding = 0, left = 0;
    for (int const i : active_) {
        if (winding == 0) left = i;
        winding += edge(i).sign;
        if (winding == 0) coverage_.addTrapezoid(edge(left).through(row), edge(i).through(row));
    }
    return true;
}

Crossing Strokes::Edge::through(int row) const {
    // From the middle of the first line to the top of the row; half of an odd number of steps is rounded towards 0.
    std::int64_t const steps = step / (std::int64_t{1} << moreBits), rest = step - (steps << moreBits);
    std::int64_t const top = at(row * linesPerRow) - ((steps / 2) << moreBits) - rest / 2;
    return {top, top + step * linesPerRow};
}

void Strokes::measureIntervals(int row) {
    crossing_.clear();
    Columns columns{band_.width, 0};
    for (Chain const& chain : chains_) {
        if (row < chain.firstRow || row >= chain.endRow) continue;
        crossing_.push_back(indexOf(chain, row * linesPerRow));
        columns = {std::min(columns.first, chain.columns.first), std::max(columns.end, chain.columns.end)};
    }
    if (crossing_.size() > 1) separate();
    for (std::size_t const at : crossing_) coverage_.addIntervals(lefts_.data() + at, rights_.data() + at, columns);
}

/// Joins the intervals of several chains that meet on a line of the row in work: the latest of them becomes the whole, the
/// others become empty.
void Strokes::separate() {
    for (std::size_t chain = 1; chain < crossing_.size(); ++chain) {
        std::int32_t* const lefts = lefts_.data() + crossing_[chain];
        std::int32_t* const rights = rights_.data() + crossing_[chain];
        for (std::size_t other = 0; other < chain; ++other) {
            std::int32_t* const otherLefts = lefts_.data() + crossing_[other];
            std::int32_t* const otherRights = rights_.data() + crossing_[other];
            for (int i = 0; i < linesPerRow; ++i) {
                bool const meet = lefts[i] <= otherRights[i] && otherLefts[i] <= rights[i];
                lefts[i] = meet ? std::min(lefts[i], otherLefts[i]) : lefts[i];
                rights[i] = meet ? std::max(rights[i], otherRights[i]) : rights[i];
                otherLefts[i] = meet ? farRight : otherLefts[i];
                otherRights[i] = meet ? farLeft : otherRights[i];
            }
        }
    }
}

}
