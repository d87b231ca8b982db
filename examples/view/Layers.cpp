#include "view/Layers.h"

namespace view {

void Layers::show(Quark layer, bool shown) {
    if (shows(layer) == shown) return;
    if (shown) {
        hidden_.erase(layer);
    } else {
        hidden_.insert(layer);
    }
    // This comes last: each window that has the layer asks at once which layers are hidden, and requests a new picture.
    changed_->notify(layer);
}

}
