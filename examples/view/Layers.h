/// Which layers are shown.
#pragma once

#include "view/Sheet.h"

#include "orn/events/EventSubscription.h"

namespace view {

/// The hidden layers, of all drawings. Used by the windows' thread alone.
class Layers {
public:
    LayerSet const& hidden() const noexcept { return hidden_; }
    bool shows(Quark layer) const { return !hidden_.contains(layer); }

    void show(Quark layer, bool shown);

    EVSubscriptionList<Quark>& changed() const { return *changed_; }  ///< the layer that was shown or hidden

private:
    LayerSet hidden_;
    ORN::Handle<EVSubscriptionList<Quark>> changed_ = EVSubscriptionList<Quark>::create();
};

}
