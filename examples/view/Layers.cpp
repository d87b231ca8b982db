#include "view/Layers.h"

namespace view {

void Layers::show(Quark layer, bool shown) {
    if (shows(layer) == shown) return;
    if (shown) {
        hidden_.erase(layer);
    } else {
        hidden_.insert(layer);
    }
    changed_->notify(layer);
}

}
