/// Anti-aliased lines in the memory of a picture.
#pragma once

#include "drawing/Coverage.h"
#include "drawing/Pen.h"
#include "drawing/Samples.h"

#include "orn/geometry/Point.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace drawing {

/// Rows of pixels in the memory of a top-down 32-bit bitmap: blue, green, red and a byte without meaning for each.
struct Band {
    unsigned char* pixels;  ///< of the first row
    int width;              ///< pixels in a row, and from row to row
    int top;                ///< the row of the page that the first row is
    int height;             ///< number of rows
};

/// Draws polylines of one width, with round joins and ends, into a band of the page. Points are in pixels of the page, y
/// downwards; they are rounded to 1/256 of a pixel. The band gets the pixels that these rows have in the whole page; what
/// lies outside is cut off. One thread at a time; objects over different rows share nothing.
///
/// A line covers the area that a regular polygon, the pen, sweeps over. Each row of pixels is sampled along fifteen lines;
/// a row that all edges cross from top to bottom without meeting is measured by trapezoids instead.
///
/// The channels differ by two of 255 levels at most from what Cairo draws, stroke by stroke, with these exceptions. At the
/// ends of level lines a pixel may differ by 12 levels. On lines that leave the page it may differ by 16. One of some
/// hundred long lines and sharp joins has a pixel that differs by up to 6. A polyline that goes farther away than 131,072
/// pixels and comes back is drawn in parts: where their edges lie over each other, a pixel may differ by a quarter.
class Strokes {
public:
    Strokes(Band const& band, double width);

    /// Draws over what is there. A polyline without length is a dot.
    void draw(std::span<Point<2> const> points, std::uint32_t rgb);

private:
    /// A part of the polyline that never rises, or never falls. It covers one interval of each line of samples. The ends
    /// of these intervals stand in lefts_ and rights_, in steps from the left of the band; see indexOf.
    struct Chain {
        int firstRow, endRow;  // of pixels in the band
        Columns columns;       // outside of these nothing is covered
        std::size_t begin;     // the index of the first row's first line
    };

    /// A side of the whole polyline's area. x and step have moreBits.
    struct Edge {
        std::int64_t x;     ///< where it meets its first line of samples
        std::int64_t step;  ///< from one line of samples to the next
        int first, end;     ///< lines of samples; the end is not met
        int sign;           ///< 1 downwards, -1 upwards, 0 when it meets no line
        int next;           ///< the next edge whose first whole row is the same, or -1

        std::int64_t at(int line) const { return x + step * (line - first); }
        /// The rows in the band that it crosses from top to bottom.
        int firstRow() const { return std::max((first + linesPerRow - 1) / linesPerRow, 0); }
        int endRow() const { return end / linesPerRow; }
        Crossing through(int row) const;
    };

    /// A row of pixels, while an outline is filled.
    struct Row {
        int begin = -1;         ///< the first edge whose first whole row it is, or -1
        bool isBroken = false;  ///< an edge begins or ends between its first line of samples and its last one
    };

    /// Lines of samples, of which `end` is the first one behind.
    struct Lines {
        int first, end;
    };

    void add(Point<2> const& p);
    void fill(std::uint32_t rgb);
    void addChains();
    bool beginChain(std::size_t from, std::size_t to);
    void addChain(std::size_t from, std::size_t to);
    void addEnd(Place const& at, Side const& side, bool pointsUp);
    void addPen(Place const& at);
    void addJoin(Place const& at, Side const& in, Side const& out);
    void addFan(Place const& around, Side const& from, Side const& to, bool withEnds);
    void addEdge(Place const& from, Place const& to, std::int64_t const* knownStep = nullptr);
    void addBound(Edge const& edge);
    static Edge edgeBetween(Place const& from, Place const& to, std::int64_t const* knownStep = nullptr);
    void breakRow(int line);
    Lines linesWithin(int first, int end) const;
    static std::size_t indexOf(Chain const& chain, int line);
    void cover(std::uint32_t rgb);
    bool measureTrapezoids(int row);
    void measureIntervals(int row);
    void separate();

    Band band_;
    Pen pen_;
    std::vector<Place> places_;
    std::vector<Side> sides_;  // the right ones of all segments
    std::vector<Chain> chains_;
    std::vector<std::int32_t> lefts_, rights_;  // of all chains, line by line
    std::size_t boundCount_ = 0;                // of these that are in use
    std::vector<Edge> edges_;                   // those that cross whole rows
    std::vector<Row> rows_;
    std::vector<int> active_;            // the edges that cross the row in work
    std::vector<std::size_t> crossing_;  // the first lines of the chains that reach into the row in work
    Coverage coverage_;
};

}
