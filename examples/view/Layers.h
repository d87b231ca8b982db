/// The choice of the layers that are shown.
#pragma once

#include "view/Sheet.h"

#include "orn/events/EventSubscription.h"

namespace view {

/// The hidden layers of all drawings. Only the thread of the windows may use it.
class Layers {
public:
    LayerSet const& hidden() const noexcept { return hidden_; }
    bool shows(Quark layer) const { return !hidden_.contains(layer); }

    void show(Quark layer, bool shown);

    EVSubscriptionList<Quark>& changed() const { return *changed_; }  ///< announces the layer that was shown or hidden

private:
    LayerSet hidden_;
    ORN::Handle<EVSubscriptionList<Quark>> changed_ = EVSubscriptionList<Quark>::create();
};

}
