#include "view/Sheet.h"

#include "drawing/Reading.h"

#include <algorithm>

namespace view {

Sheet::Sheet(std::wstring const& file, std::function<void(std::wstring const&)> const& remark)
    // The name begins behind the last separator; without one find_last_of gives npos, and npos + 1 is 0.
    : name_{file == L"-" ? L"standard input" : file.substr(file.find_last_of(L"\\/:") + 1)},
      drawing_{drawing::readDrawing(file, {.remark = remark})} {
    for (drawing::Layer const& layer : drawing_.layers()) layers_.push_back(Quark::create(layer.name.c_str()));
}

bool Sheet::has(Quark layer) const noexcept {
    return std::find(layers_.begin(), layers_.end(), layer) != layers_.end();
}

LayerSet Sheet::hiddenByItself() const {
    LayerSet hidden;
    for (std::size_t i = 0; i < layers_.size(); ++i) {
        // The constructor has filled layers_ in the order of the drawing's layers: one index serves both.
        if (drawing_.layers()[i].hidden) hidden.insert(layers_[i]);
    }
    return hidden;
}

drawing::Drawing Sheet::without(LayerSet const& hidden) const {
    drawing::Drawing rest;
    for (drawing::Entity const& entity : drawing_.entities()) {
        drawing::Layer const& layer = drawing_.layers()[entity.layer];
        // Pictures are all that is made of the rest, and they need no sums: measuring each arc would take its time.
        if (!hidden.contains(layers_[entity.layer])) rest.add(entity.arc, entity.rgb, layer.name, {});
    }
    return rest;
}

}
