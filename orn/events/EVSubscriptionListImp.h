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
        // The lock keeps the entries where they are, also while a callback announces on this list again.
        Entry const* next = members_.data();
        Entry const* const end = next + members_.size();
        Entry const* thrower = nullptr;
        try {
            while (next != end) {
                if (next->step != nullptr) {
                    next = next->step(next, end, thrower, arguments...);
                } else {
                    call(*next, arguments...);
                    ++next;
                }
            }
        } catch (std::exception const&) {
            // The subscription that threw gets the event once more, and those after it must not miss it.
            for (next = thrower != nullptr ? thrower : next; next != end; ++next) try {
                    call(*next, arguments...);
                } catch (std::exception const&) {}
            throw;
        }
    }

private:
    using Entry = EVSubscriptionEntry<T>;

    static void call(Entry const& entry, Arguments... arguments) {
        if (!entry.subscription->suppressed()) entry.subscription->notify(arguments...);
    }

    void insert(EVSubscription<T>* subscription) override { insertStepped(subscription, nullptr); }

    void insertStepped(EVSubscription<T>* subscription, typename Entry::Step step) override {
        ExclusiveLock const lock{lock_};
        auto const place = placeOf(subscription);
        if (place != members_.end() && place->subscription == subscription) return;
        auto const made = members_.insert(place, {subscription, step, nullptr});
        chooseSteps(made - members_.begin());
    }

    void erase(EVSubscription<T>* subscription) override {
        ExclusiveLock const lock{lock_};
        auto const place = placeOf(subscription);
        if (place == members_.end() || place->subscription != subscription) return;
        auto const next = members_.erase(place);
        chooseSteps(next - members_.begin());
    }

    /// Chooses how the entries around a change are called. A single one of its class is called without its step, which
    /// would cost more than it saves.
    void chooseSteps(std::ptrdiff_t changed) {
        auto const own = [this](std::ptrdiff_t i) {
            return i >= 0 && i < std::ssize(members_) ? members_[static_cast<std::size_t>(i)].own : nullptr;
        };
        for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(changed - 1, 0); i <= changed + 1 && i < std::ssize(members_);
             ++i)
            members_[static_cast<std::size_t>(i)].step =
                own(i) == own(i - 1) || own(i) == own(i + 1) ? own(i) : nullptr;
    }

    auto placeOf(EVSubscription<T>* subscription) {
        return std::ranges::lower_bound(members_, subscription, std::less<>{}, &Entry::subscription);
    }

    LONG volatile lock_ = 0;
    std::vector<Entry> members_;  // ascending by the subscriptions' addresses
};
