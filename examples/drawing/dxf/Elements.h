/// The content of a DXF file's blocks, or one entity, in numbers.
#pragma once

#include "orn/geometry/Vector.h"

#include <cstdint>
#include <span>
#include <vector>

namespace drawing::dxf {

/// What the numbers of an element mean. Points and vectors have three coordinates.
enum class Kind : std::uint8_t {
    path,       ///< the extrusion direction, 1 if closed, and a point in its own plane and a bulge for each vertex
    conic,      ///< a point c, vectors u and v, angles start and sweep (radians): c + u cos w + v sin w
    spline,     ///< degree, number of points, a point and a weight for each, the knots
    insertion,  ///< base point to place, rows of a matrix and a translation; columns, rows, step of either (vectors)
    notDrawn    ///< nothing
};

/// Colours are counted as in the file: 0 by block, 256 by layer, 1 to 255 an index; a true colour is trueColour + 0xRRGGBB.
constexpr std::int32_t byBlock = 0, byLayer = 256, trueColour = 1 << 24;

struct Element {
    Kind kind = Kind::notDrawn;
    std::uint32_t layer = 0;
    std::int32_t colour = byLayer;
    std::uint32_t name = 0;              ///< index of the block of an insertion, or of the kind of what is not drawn
    std::uint64_t first = 0, count = 0;  ///< where its numbers lie in Elements::numbers
};

/// Elements, and the numbers of all of them in one vector.
struct Elements {
    std::vector<Element> list;
    std::vector<double> numbers;

    /// What it holds, in numbers; an element takes the memory of four.
    std::uint64_t size() const { return numbers.size() + 4 * list.size(); }

    std::span<double const> numbersOf(Element const& element) const {
        return std::span{numbers}.subspan(element.first, element.count);
    }
};

/// The x and y axes of the plane that an extrusion direction, a unit vector, stands on: the arbitrary axis algorithm.
struct Axes {
    Vector<3> x, y, z;

    explicit Axes(Vector<3> const& direction);
};

}
