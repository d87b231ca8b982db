/// A drawing: straight lines and circular arcs on layers, and their measurements.
#pragma once

#include "orn/geometry/Arc.h"
#include "orn/geometry/Extent.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace drawing {

/// A line, or an arc when its bulge is not 0.
struct Entity {
    ORN::Arc<2> arc;
    std::uint32_t rgb = 0;    ///< 0xRRGGBB
    std::uint32_t layer = 0;  ///< index into the drawing's layers
};

/// Sums over some entities.
struct Measurements {
    std::uint64_t entities = 0;
    std::uint64_t arcs = 0;  ///< those with a bulge
    double length = 0;
    double area = 0;  ///< between arcs and chords, with the sign of the bulge
    Extent<2> extent;

    Measurements& operator+=(Measurements const& other);
};

/// With the smallest box around the arc, whatever its bulge.
Measurements measure(ORN::Arc<2> const& arc);

/// Whether all numbers are finite.
bool isMeasurable(Measurements const& sums);

struct Layer {
    std::wstring name;
    Measurements sums;
    bool hidden = false;  ///< whether the drawing itself hides the layer
};

class Drawing {
public:
    std::vector<Entity> const& entities() const noexcept { return entities_; }
    std::vector<Layer> const& layers() const noexcept { return layers_; }  ///< in order of first appearance

    Measurements total() const;

    /// The entities on some of the layers, in their order.
    Drawing part(std::function<bool(Layer const&)> const& chosen) const;

    /// `sums` must be measure(arc): the caller has them already, because it refuses what is too large to be measured.
    void add(ORN::Arc<2> const& arc, std::uint32_t rgb, std::wstring const& layer, Measurements const& sums);

    void hideLatestLayer() { layers_[latestLayer_].hidden = true; }  ///< that of the entity that was added last

private:
    std::uint32_t layerNamed(std::wstring const& name);

    std::vector<Entity> entities_;
    std::vector<Layer> layers_;
    std::unordered_map<std::wstring, std::uint32_t> layerIndices_;
    std::uint32_t latestLayer_ = 0;
};

}
