#include "drawing/Drawing.h"

#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"

#include <cmath>

namespace drawing {

Measurements& Measurements::operator+=(Measurements const& other) {
    entities += other.entities;
    arcs += other.arcs;
    length += other.length;
    area += other.area;
    extent |= other.extent;
    return *this;
}

Measurements measure(ORN::Arc<2> const& arc) {
    Vector<2> const chord = arc.end() - arc.start();
    double const squared = chord.x() * chord.x() + chord.y() * chord.y();
    bool const bulged = arc.bulge() != 0;
    // ORNArcSegmentArea is the area over the chord's square. A line is left out, because the square of a long chord is
    // infinite, and 0 times that is no number: such a line can still be measured.
    return {1, bulged ? 1u : 0u, arc.length(), bulged ? ORNArcSegmentArea(arc.bulge()) * squared : 0.0,
            ORN::trueExtent(arc)};
}

bool isMeasurable(Measurements const& sums) {
    // Numbers of a file are finite, but their squares and sums may not be.
    return std::isfinite(sums.length) && std::isfinite(sums.area) && sums.extent.lo().isFinite() &&
           sums.extent.hi().isFinite();
}

Measurements Drawing::total() const {
    Measurements total;
    for (Layer const& layer : layers_) total += layer.sums;
    return total;
}

Drawing Drawing::part(std::function<bool(Layer const&)> const& chosen) const {
    std::vector<bool> keep;
    keep.reserve(layers_.size());
    for (Layer const& layer : layers_) keep.push_back(chosen(layer));
    Drawing part;
    for (Entity const& entity : entities_) {
        // By name, because the layers of the part get indices of their own.
        if (keep[entity.layer]) part.add(entity.arc, entity.rgb, layers_[entity.layer].name, measure(entity.arc));
    }
    return part;
}

void Drawing::add(ORN::Arc<2> const& arc, std::uint32_t rgb, std::wstring const& layer, Measurements const& sums) {
    std::uint32_t const index = layerNamed(layer);
    entities_.push_back({arc, rgb, index});
    layers_[index].sums += sums;
}

std::uint32_t Drawing::layerNamed(std::wstring const& name) {
    // Entities of one layer mostly follow one another.
    if (!layers_.empty() && layers_[latestLayer_].name == name) return latestLayer_;
    auto const found = layerIndices_.find(name);
    if (found != layerIndices_.end()) return latestLayer_ = found->second;

    auto const index = static_cast<std::uint32_t>(layers_.size());
    layers_.push_back({name, {}});
    layerIndices_.emplace(name, index);
    return latestLayer_ = index;
}

}
