/// A drawing and its layers.
#pragma once

#include "drawing/Drawing.h"

#include "orn/text/Quark.h"

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace view {

using LayerSet = std::unordered_set<Quark>;

/// A drawing read from a file. Its layers are quarks: layers of one name are one layer in all drawings.
class Sheet {
public:
    /// Throws what readDrawing throws. `remark` is called as ReadingOptions says.
    Sheet(std::wstring const& file, std::function<void(std::wstring const&)> const& remark);

    std::wstring const& name() const noexcept { return name_; }  ///< the file's, without folders
    drawing::Drawing const& drawing() const noexcept { return drawing_; }
    std::vector<Quark> const& layers() const noexcept { return layers_; }

    bool has(Quark layer) const noexcept;
    LayerSet hiddenByItself() const;                         ///< the layers that the drawing itself hides
    drawing::Drawing without(LayerSet const& hidden) const;  ///< the entities on other layers, in their order

private:
    std::wstring name_;
    drawing::Drawing drawing_;
    std::vector<Quark> layers_;  ///< those of the drawing, in its order
};

}
