/// The line at the bottom of a window.
#pragma once

#include "view/Window.h"

#include "orn/events/EventSubscription.h"

#include <functional>
#include <string>

namespace view {

template <typename T>
using EventList = ORN::Handle<EVSubscriptionList<T>>;

/// What a window announces about its picture. All events come on the thread of the windows.
struct PictureEvents {
    EventList<int> bandsDone =
        EVSubscriptionList<int>::create();  ///< with the share of the rows that are drawn, in per cent
    EventList<void> finished = EVSubscriptionList<void>::create();
    EventList<std::wstring> failed = EVSubscriptionList<std::wstring>::create();  ///< with the reason
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
