/// The line at the bottom of a window.
#pragma once

#include "view/Window.h"

#include "orn/events/EventSubscription.h"

#include <functional>
#include <string>

namespace view {

template <typename T>
using EventList = ORN::Handle<EVSubscriptionList<T>>;

/// What a window announces about its picture, all on the windows' thread.
struct PictureEvents {
    EventList<int> bandsDone = EVSubscriptionList<int>::create();  ///< per cent of the rows that are drawn
    EventList<void> finished = EVSubscriptionList<void>::create();
    EventList<std::wstring> failed = EVSubscriptionList<std::wstring>::create();  ///< why
};

template <typename T>
using Subscription = EVCallableSubscription<T, std::function<typename EVSubscriptionParameter<T>::Callback>>;

/// Says at the bottom of a window how far the picture is. The window must outlive it.
class StatusLine {
public:
    StatusLine(Window& window, PictureEvents const& events, std::wstring const& finishedText);

private:
    Subscription<int> bandsDone_;
    Subscription<void> finished_;
    Subscription<std::wstring> failed_;
};

}
