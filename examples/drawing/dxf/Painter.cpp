#include "drawing/dxf/Painter.h"

#include "drawing/dxf/Colours.h"

#include "orn/transforms/UniformTransform.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace drawing::dxf {

namespace {

Vector<3> vectorAt(std::span<double const> numbers, std::size_t at) {
    return {numbers[at], numbers[at + 1], numbers[at + 2]};
}

/// What is seen from above.
Point<2> flat(Point<3> const& p) { return {p.x(), p.y()}; }
Vector<2> flat(Vector<3> const& v) { return {v.x(), v.y()}; }

Point<3> at(Vector<3> const& v) { return Point<3>::origin() + v; }

NonUniformTransform<3> placingOf(std::span<double const> numbers) {
    double rows[4][3];
    for (std::size_t i = 0; i < 12; ++i) rows[i / 3][i % 3] = numbers[i];
    return NonUniformTransform<3>::createFromPod(rows);
}

/// The circle of an arc that a plane's axes u and v map, as a part of a conic.
Conic conicOf(ORN::Arc<2> const& arc, Point<2> const& origin, Vector<2> const& u, Vector<2> const& v) {
    Point<2> const centre = arc.centre();
    double const radius = arc.radius();
    Vector<2> const start = arc.start() - centre;
    return {origin + u * centre.x() + v * centre.y(), u * radius, v * radius, std::atan2(start.y(), start.x()),
            4 * std::atan(arc.bulge())};
}

}

Painter::Painter(Tables& tables, ReadingOptions const& options, Limits const& limits, Drawing& drawing,
                 std::function<void(std::wstring const&)> fail)
    : tables_{tables},
      options_{options},
      limits_{limits},
      drawing_{drawing},
      fail_{std::move(fail)},
      takeArc_{[this](ORN::Arc<2> const& arc) { take(arc); }} {}

void Painter::draw(Elements const& elements, Element const& element) { draw(elements, element, Placing{}, {}); }

void Painter::draw(Elements const& elements, Element const& element, Placing const& placing,
                   Surroundings const& around) {
    step();
    // An entity on layer 0 of a block lies on the layer of the insertion.
    std::uint32_t const layer = element.layer == 0 ? around.layer : element.layer;
    std::int32_t colour = element.colour;
    // In this order: the layer's colour is a real one, and `around` holds what the insertion's own colour came to.
    if (colour == byLayer) colour = tables_.layers[layer].colour;
    if (colour == byBlock) colour = around.colour;
    std::span<double const> const numbers = elements.numbersOf(element);

    if (element.kind == Kind::insertion)
        return insertion(numbers, element.name, placing, {layer, colour, around.depth});
    // The layers are in a deque: the entry stays where it is while take() uses it.
    layer_ = &tables_.layers[layer];
    rgb_ = colour >= trueColour ? static_cast<std::uint32_t>(colour - trueColour) : colourOfIndex(colour, options_.ink);
    switch (element.kind) {
        case Kind::path: path(numbers, placing); break;
        case Kind::conic: conic(numbers, placing); break;
        case Kind::spline: spline(numbers, placing); break;
        default: ++notDrawn_[tables_.kinds[element.name]];
    }
}

void Painter::path(std::span<double const> numbers, Placing const& placing) {
    Axes const axes{vectorAt(numbers, 0)};
    bool const closed = numbers[3] != 0;
    Vector<2> const u = flat(axes.x * placing), v = flat(axes.y * placing);
    std::size_t const count = (numbers.size() - 4) / 4;
    // Where the plane is mapped without distortion, arcs stay arcs; seen from behind they turn the other way.
    bool const circular = Conic{{}, u, v, 0, 0}.isCircular();
    double const sense = cross(u, v) < 0 ? -1 : 1;

    auto const vertex = [&](std::size_t i) { return vectorAt(numbers, 4 + 4 * i); };
    auto const placed = [&](Vector<3> const& p) {
        return flat(at(axes.x * p.x() + axes.y * p.y() + axes.z * p.z()) * placing);
    };
    Point<2> from = placed(vertex(0));
    if (count == 1) return take({from, from});  // a dot
    for (std::size_t i = 0; i + (closed ? 0 : 1) < count; ++i) {
        std::size_t const next = (i + 1) % count;
        Point<2> const to = placed(vertex(next));
        double const bulge = numbers[4 + 4 * i + 3];
        if (bulge == 0 || circular) {
            take({from, sense * bulge, to});
        } else {
            Vector<3> const a = vertex(i), b = vertex(next);
            Point<2> const origin = placed({0, 0, a.z()});
            Conic const conic = conicOf({{a.x(), a.y()}, bulge, {b.x(), b.y()}}, origin, u, v);
            conicArcs(conic, tolerance(conic.u.length() + conic.v.length()), takeArc_);
        }
        from = to;
    }
}

void Painter::conic(std::span<double const> numbers, Placing const& placing) {
    Conic const conic{flat(at(vectorAt(numbers, 0)) * placing), flat(vectorAt(numbers, 3) * placing),
                      flat(vectorAt(numbers, 6) * placing), numbers[9], numbers[10]};
    conicArcs(conic, tolerance(conic.u.length() + conic.v.length()), takeArc_);
}

void Painter::spline(std::span<double const> numbers, Placing const& placing) {
    Spline spline;
    spline.degree = static_cast<int>(numbers[0]);
    std::size_t const count = static_cast<std::size_t>(numbers[1]);
    // A spline of many points may come to no arc at all.
    step(count);
    Extent<2> extent;
    for (std::size_t i = 0; i < count; ++i) {
        // Affine maps of the points map the curve, and the weights stay: seen from above it is a spline again.
        spline.points.push_back(flat(at(vectorAt(numbers, 2 + 4 * i)) * placing));
        spline.weights.push_back(numbers[2 + 4 * i + 3]);
        extent += spline.points.back();
    }
    auto const knots = numbers.subspan(2 + 4 * count);
    spline.knots.assign(knots.begin(), knots.end());
    splineArcs(spline, tolerance((extent.hi() - extent.lo()).length()), takeArc_);
}

void Painter::insertion(std::span<double const> numbers, std::uint32_t name, Placing const& placing,
                        Surroundings const& around) {
    Block& block = tables_.blocks[name];
    if (!block.defined) {
        ++notDrawn_["INSERT (of an unknown block)"];
        return;
    }
    if (tables_.layers[around.layer].frozen) {
        ++notDrawn_["INSERT (on a frozen layer)"];
        return;
    }
    if (block.open) fail_(L"the block '" + block.name + L"' inserts itself");
    if (around.depth == limits_.depth) {
        fail_(L"blocks are inserted in blocks more than " + std::to_wstring(limits_.depth) + L" deep");
    }
    // The base point of the block comes to the place of the insertion; then all is placed as the insertion itself.
    block.open = true;
    Placing first{UniformTransform<3>::translation(-block.base)};
    first *= placingOf(numbers);
    first *= placing;
    Vector<3> const columnStep = vectorAt(numbers, 14) * placing, rowStep = vectorAt(numbers, 17) * placing;
    // A file may ask for more rows than an integer counts; step() ends the drawing long before a double counts wrongly.
    // NOLINTBEGIN(clang-analyzer-security.FloatLoopCounter)
    for (double row = 0; row < numbers[13]; ++row) {
        for (double column = 0; column < numbers[12]; ++column) {
            step();
            Placing whole = first;
            // This comes after all the rest, because the steps have gone through `placing` already.
            whole *= UniformTransform<3>::translation(columnStep * column + rowStep * row);
            copy(block, whole, {around.layer, around.colour, around.depth + 1});
        }
    }
    // NOLINTEND(clang-analyzer-security.FloatLoopCounter)
    block.open = false;
}

void Painter::copy(Block& block, Placing const& placing, Surroundings const& around) {
    for (Element const& element : block.elements.list) draw(block.elements, element, placing, around);
}

void Painter::step(std::uint64_t count) {
    steps_ += count;
    if (steps_ > limits_.steps) {
        fail_(L"more than " + std::to_wstring(limits_.steps) +
              L" entities and points of splines, with those of each inserted block");
    }
}

void Painter::take(ORN::Arc<2> const& arc) {
    Measurements const sums = measure(arc);
    if (!isMeasurable(sums)) fail_(L"the entity is too large to be measured");
    if (drawing_.entities().size() == limits_.pieces) {
        fail_(L"more than " + std::to_wstring(limits_.pieces) + L" lines and arcs");
    }
    drawing_.add(arc, rgb_, layer_->name, sums);
    // What is hidden is kept: the user may ask for the layer.
    if (layer_->off || layer_->frozen) drawing_.hideLatestLayer();
}

double Painter::tolerance(double size) const { return options_.tolerance > 0 ? options_.tolerance : size * 1e-6; }

}
