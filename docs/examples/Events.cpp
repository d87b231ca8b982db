#include "orn/orn.h"

#include <iostream>

int main() {
    // The publisher and every subscription hold the list; the last of them lets it go.
    ORN::Handle<EVSubscriptionList<int>> const layerChanged = EVSubscriptionList<int>::create();
    {
        EVCallableSubscription redraw{*layerChanged, [](int layer) { std::wcout << L"redraw " << layer << L'\n'; }};
        layerChanged->notify(1);

        EVSuppression const quiet{redraw};
        layerChanged->notify(2);
    }
    layerChanged->notify(3);

    // A subscriber that throws does not keep the event from the others. It is called a second time, and in the end the
    // publisher gets the exception.
    int calls = 0;
    EVCallableSubscription failing{*layerChanged, [&calls](int) {
                                       ++calls;
                                       throw ORN::OrnError{L"the disk is full"};
                                   }};
    EVCallableSubscription counting{*layerChanged, [](int layer) { std::wcout << L"told of " << layer << L'\n'; }};
    try {
        layerChanged->notify(4);
    } catch (ORN::OrnError const& error) {
        std::wcout << error.wWhat() << L", after " << calls << L" calls\n";
    }
}
