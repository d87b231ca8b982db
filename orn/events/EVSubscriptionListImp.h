/// The event list: a lock word, and the subscriptions in the order of their addresses.
#pragma once

#include "orn/events/EventSubscription.h"
#include "orn/threading/Lock.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <vector>

template <typename T, typename Callback = typename EVSubscriptionParameter<T>::Callback>
class EVSubscriptionListImp;

template <typename T, typename... Arguments>
class EVSubscriptionListImp<T, void(Arguments...)> final : public EVSubscriptionList<T> {
public:
    EVSubscriptionListImp() = default;
    EVSubscriptionListImp(EVSubscriptionListImp const&) = default;
    EVSubscriptionListImp& operator=(EVSubscriptionListImp const&) = default;
    ~EVSubscriptionListImp() override = default;

    void notify(Arguments... arguments) override {
        SharedLock const lock{lock_};
        auto subscription = members_.begin();
        auto const end = members_.end();
        try {
            for (; subscription != end; ++subscription)
                if (!(*subscription)->suppressed()) (*subscription)->notify(arguments...);
        } catch (std::exception const&) {
            // The one that threw gets the event once more, and those after it are not to miss it.
            for (; subscription != end; ++subscription) try {
                    if (!(*subscription)->suppressed()) (*subscription)->notify(arguments...);
                } catch (std::exception const&) {}
            throw;
        }
    }

private:
    void insert(EVSubscription<T>* subscription) override {
        ExclusiveLock const lock{lock_};
        auto const place = placeOf(subscription);
        if (place == members_.end() || *place != subscription) members_.insert(place, subscription);
    }

    void erase(EVSubscription<T>* subscription) override {
        ExclusiveLock const lock{lock_};
        auto const place = placeOf(subscription);
        if (place != members_.end() && *place == subscription) members_.erase(place);
    }

    auto placeOf(EVSubscription<T>* subscription) {
        return std::lower_bound(members_.begin(), members_.end(), subscription, std::less<>{});
    }

    LONG volatile lock_ = 0;
    std::vector<EVSubscription<T>*> members_;  // ascending
};
