/// Elements of DXF files as lines and arcs of a drawing.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/dxf/Curves.h"
#include "drawing/dxf/Elements.h"
#include "drawing/dxf/Reader.h"

#include "orn/transforms/NonUniformTransform.h"

#include <deque>
#include <functional>
#include <map>
#include <string>

namespace drawing::dxf {

struct LayerEntry {
    std::wstring name;
    std::int32_t colour = 7;  ///< as an element's, but never byLayer or byBlock
    bool off = false, frozen = false;
};

struct Block {
    std::wstring name;
    Elements elements{};
    Vector<3> base{};
    bool defined = false;
    bool open = false;  ///< it is being drawn
};

/// What the file has defined so far. Elements refer to it by indices, and the layer 0 has the index 0.
struct Tables {
    std::deque<LayerEntry> layers;
    std::deque<Block> blocks;
    std::deque<std::string> kinds;
};

class Painter {
public:
    /// All arguments must outlive the painter. `fail` throws an error that names the place in the file.
    Painter(Tables& tables, ReadingOptions const& options, Limits const& limits, Drawing& drawing,
            std::function<void(std::wstring const&)> fail);

    /// Draws an element of the model.
    void draw(Elements const& elements, Element const& element);

    std::map<std::string, std::uint64_t> const& notDrawn() const noexcept { return notDrawn_; }  ///< counted by kind

private:
    using Placing = NonUniformTransform<3>;

    /// What an element in a block takes over from the insertion.
    struct Surroundings {
        std::uint32_t layer = 0;
        std::int32_t colour = 7;
        int depth = 0;
    };

    void draw(Elements const& elements, Element const& element, Placing const& placing, Surroundings const& around);
    void path(std::span<double const> numbers, Placing const& placing);
    void conic(std::span<double const> numbers, Placing const& placing);
    void spline(std::span<double const> numbers, Placing const& placing);
    void insertion(std::span<double const> numbers, std::uint32_t name, Placing const& placing,
                   Surroundings const& around);
    void copy(Block& block, Placing const& placing, Surroundings const& around);
    void step(std::uint64_t count = 1);
    void take(ORN::Arc<2> const& arc);
    double tolerance(double size) const;

    Tables& tables_;
    ReadingOptions const& options_;
    Limits const& limits_;
    Drawing& drawing_;
    std::function<void(std::wstring const&)> fail_;
    TakeArc takeArc_;
    std::map<std::string, std::uint64_t> notDrawn_;
    std::uint64_t steps_ = 0;

    // Of the element that is being drawn.
    LayerEntry const* layer_ = nullptr;
    std::uint32_t rgb_ = 0;
};

}
