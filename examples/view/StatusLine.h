/// The line at the bottom of a window.
#pragma once

#include "orn/events/EventSubscription.h"

#include <functional>
#include <string>

#include <windows.h>

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

/// A status bar that says how far the picture is. It is destroyed before its parent window, or with it.
class StatusLine {
public:
    StatusLine(HWND parent, PictureEvents const& events, std::wstring const& finishedText);

    int height() const;
    void fitParent();  ///< after the parent's size has changed

private:
    void show(std::wstring const& text);

    HWND bar_;
    Subscription<int> bandsDone_;
    Subscription<void> finished_;
    Subscription<std::wstring> failed_;
};

}
