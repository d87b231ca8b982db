/// Anti-aliased lines in the memory of a picture.
#pragma once

#include "orn/geometry/Point.h"

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
/// The channels differ by two of 255 levels at most from what Cairo draws, stroke by stroke. There are two exceptions: the
/// ends of level lines, where a pixel may differ by 12 levels, and lines that leave the page, which may differ by 16.
class Strokes {
public:
    Strokes(Band const& band, double width);

    /// Draws over what is there. A polyline without length is a dot.
    void draw(std::span<Point<2> const> points, std::uint32_t rgb);

private:
    /// In steps of 1/256 of a pixel, from the top left corner of the band.
    struct Place {
        std::int32_t x, y;
        friend bool operator==(Place const&, Place const&) = default;
        friend Place operator+(Place const& a, Place const& b) { return {a.x + b.x, a.y + b.y}; }
        friend Place operator-(Place const& a, Place const& b) { return {a.x - b.x, a.y - b.y}; }
        friend Place operator-(Place const& a) { return {-a.x, -a.y}; }
    };

    /// A side of a segment: from the segment to the line beside it, and the corner of the pen that reaches farthest there.
    struct Side {
        Place offset;
        std::size_t corner;
    };

    /// A side of the area, between two lines of samples. x and step have 32 more bits than a Place.
    struct Edge {
        std::int64_t x;     ///< where it meets its first line of samples
        std::int64_t step;  ///< from one line of samples to the next
        int first, last;    ///< lines of samples; the last one is not met
        int sign;           ///< 1 downwards, -1 upwards
        int next;           ///< the next edge that begins in the same row of pixels, or -1

        std::int64_t at(int line) const { return x + step * (line - first); }
    };

    /// A row of pixels, while an outline is filled.
    struct Row {
        int begin = -1;         ///< the first edge that begins there, or -1
        bool isBroken = false;  ///< an edge begins or ends between its first line of samples and its last one
    };

    /// What a pixel of the row in work adds: lines that the area covers from here on to the right, and what of these
    /// lines lies beside the area in this pixel, in halves of a step. One sum holds both: the lines count 2^32 each.
    using Cell = std::int64_t;

    Side rightSide(Place const& from, Place const& to) const;
    Side opposite(Side const& side) const;
    void add(Point<2> const& p);
    void fill(std::uint32_t rgb);
    void addOutline();
    void addJoin(Place const& at, Side const& in, Side const& out);
    void addFan(Place const& around, Side const& from, Side const& to, bool withEnds);
    void addEdge(Place const& from, Place const& to, std::int64_t const* knownStep = nullptr);
    void fillOutline(std::uint32_t rgb);
    bool measureRow(int row);
    void addTrapezoid(Edge const& edge, std::int64_t x, int sign);
    void addToCell(std::int64_t column, std::int32_t lines, std::int32_t beside);
    void sampleRows(int row, int end, std::uint32_t rgb);
    void crossLines(int first, int count);
    void addSpansOfFour(std::int32_t const* crossings, std::ptrdiff_t stride);
    void addSpans(int line, int end, int stride);
    void addSpan(std::int32_t from, std::int32_t to);
    void blendRow(int row, std::uint32_t rgb);

    Band band_;
    double radius_;  // in steps
    std::vector<Place> pen_;
    std::vector<std::int64_t> penSteps_;  // of the side that ends at a corner: an edge's step
    std::vector<Place> places_;
    std::vector<Edge> edges_;
    std::vector<Row> rows_;
    std::vector<int> active_;              // the edges that cross the rows in work
    std::vector<std::int32_t> crossings_;  // the first one of every line of samples, the second one of every line ...
    std::vector<std::int32_t> sorted_;     // the crossings of one line
    std::vector<int> ends_;                // for every line of samples in work, the place after its last crossing
    std::vector<Cell> cells_;              // for the row in work, with one more at each end for what lies outside
    int firstCell_ = 0, lastCell_ = 0, firstRow_ = 0, lastRow_ = 0;
};

}
