/// Publish and subscribe: a list announces events, and each subscription on it is called once for each of them.
///
/// The event carries a value of type T: void (none), int, Quark or std::wstring.
#pragma once

#include "orn/Export.h"
#include "orn/foundation/Handle.h"
#include "orn/text/Quark.h"

#include <atomic>
#include <exception>
#include <string>
#include <type_traits>
#include <utility>

template <typename T>
class EVSubscription;

/// What events may carry: the types of which the library has lists.
template <typename T>
inline constexpr bool isEventValue =
    std::is_same_v<T, void> || std::is_same_v<T, int> || std::is_same_v<T, Quark> || std::is_same_v<T, std::wstring>;

/// Names the event's value type, and how notify takes it.
template <typename T>
class EVSubscriptionParameter {
public:
    using Callback = void(T);  ///< takes a copy of the value

    constexpr EVSubscriptionParameter() noexcept = default;
    constexpr EVSubscriptionParameter(EVSubscriptionParameter const&) noexcept {}  ///< there is nothing to copy
    EVSubscriptionParameter& operator=(EVSubscriptionParameter const&) noexcept { return *this; }  ///< does nothing
};

/// Events without a value.
template <>
class EVSubscriptionParameter<void> {
public:
    using Callback = void();  ///< nothing is passed
};

/// Texts, which are not copied for each call.
template <>
class EVSubscriptionParameter<std::wstring> {
public:
    using Callback = void(std::wstring const&);  ///< valid during the call
};

/// Adds `virtual void notify` with the parameters of a callback to Base.
template <typename Base, typename Callback>
class EVNotified;

/// EVNotified, with the parameters taken out of the callback's type.
template <typename Base, typename... Arguments>
class EVNotified<Base, void(Arguments...)> : public Base {
public:
    virtual void notify(Arguments... arguments) = 0;  ///< an event has happened, with this value

protected:
    EVNotified() = default;
    EVNotified(EVNotified const&) = default;             ///< as the base copies
    EVNotified& operator=(EVNotified const&) = default;  ///< as the base copies
    ~EVNotified() override = default;
};

/// A subscription on a list, and the step that calls it. A step calls the first entry with the event's value, unless it
/// is suppressed, and goes on to the next entries while they have the same step. It returns the first entry that it has
/// not called. When an entry throws a std::exception, the step stores that entry in `thrower` and lets the exception
/// through.
template <typename T, typename Callback = typename EVSubscriptionParameter<T>::Callback>
struct EVSubscriptionEntry;

/// EVSubscriptionEntry, with the parameters taken out of the callback's type.
template <typename T, typename... Arguments>
struct EVSubscriptionEntry<T, void(Arguments...)> {
    /// Calls the entries of one class that follow each other.
    using Step = EVSubscriptionEntry const* (*)(EVSubscriptionEntry const* first, EVSubscriptionEntry const* end,
                                                EVSubscriptionEntry const*& thrower, Arguments... arguments);

    EVSubscription<T>* subscription;  ///< not owned
    Step own;                         ///< the step of its class; null when there is none but notify()
    Step step;                        ///< `own` beside an entry of the same class; null for a single one
};

/// The body of a step; call(subscription) calls one. Nothing is stored for the case that it throws, until it does.
template <typename Entry, typename Call>
inline Entry const* callSubscriptions(Entry const* first, Entry const* end, Entry const*& thrower, Call call) {
    auto const step = first->step;
    try {
        do {
            if (!first->subscription->suppressed()) call(first->subscription);
            ++first;
        } while (first != end && first->step == step);
        return first;
    } catch (std::exception const&) {
        thrower = first;
        throw;
    }
}

/// A list of subscriptions, which it does not own. Each subscription, and the publisher, holds the list by a handle.
/// Any number of threads may announce events on one list at once, and callbacks then run on all of them.
///
/// notify() calls every subscription that is not suppressed in the order of their addresses. When one throws a
/// std::exception, it is called once more, then those after it; what they throw of this kind is dropped, and at the end
/// the first exception is thrown on. Any other exception leaves notify() at once.
///
/// Subscribing and detaching wait until no notify() runs on the list. So a callback that subscribes to or detaches from
/// the list that calls it waits for ever. It may announce on the same list again, and do anything with other lists.
///
/// A copy of a list starts without references and calls the same subscriptions, which do not know of it.
template <typename T>
class EVSubscriptionList : public EVNotified<ORN::Handlable, typename EVSubscriptionParameter<T>::Callback>,
                           public EVSubscriptionParameter<T> {
    static_assert(isEventValue<T>, "there are event lists of void, int, Quark and std::wstring, and no others");

public:
    EVSubscriptionList() = default;

    /// The same subscriptions, which do not know of the copy.
    /// @{
    EVSubscriptionList(EVSubscriptionList const&) = default;
    EVSubscriptionList& operator=(EVSubscriptionList const&) = default;
    /// @}

    [[nodiscard]] static ORN::Handle<EVSubscriptionList> create();  ///< a new list without subscriptions

protected:
    ~EVSubscriptionList() override;

private:
    friend class EVSubscription<T>;

    virtual void insert(EVSubscription<T>* subscription) = 0;
    virtual void erase(EVSubscription<T>* subscription) = 0;
    // Where a list does not override it, insert().
    virtual void insertStepped(EVSubscription<T>* subscription, typename EVSubscriptionEntry<T>::Step step);
};

/// The base of every subscription: a count of suppressions, which any thread may raise and lower.
class ORN_API EVSubscriptionBase {
public:
    virtual ~EVSubscriptionBase();

    void suppress() noexcept { ++suppressions_; }    ///< not called until the matching unsuppress()
    void unsuppress() noexcept { --suppressions_; }  ///< once for each suppress()
    /// Whether an unsuppress() is still to come.
    bool suppressed() const noexcept { return suppressions_.load(std::memory_order_acquire) != 0; }

protected:
    constexpr EVSubscriptionBase() noexcept = default;
    EVSubscriptionBase(EVSubscriptionBase const&) = delete;
    EVSubscriptionBase& operator=(EVSubscriptionBase const&) = delete;

private:
    template <typename T>
    friend class EVSubscription;

    std::atomic<LONG> suppressions_{0};
    // A lock word: each thread inside destroy() counts as shared, and the one that uses the list's handle is exclusive.
    LONG volatile detaching_ = 0;
};

/// Suppresses a subscription for a scope. A notify() that runs on another thread may still call it.
class [[nodiscard]] EVSuppression {
public:
    /// The subscription outlives the scope.
    [[nodiscard]] explicit EVSuppression(EVSubscriptionBase& subscription) noexcept : subscription_{&subscription} {
        subscription_->suppress();
    }
    ~EVSuppression() { subscription_->unsuppress(); }
    EVSuppression(EVSuppression const&) = delete;
    EVSuppression& operator=(EVSuppression const&) = delete;

private:
    EVSubscriptionBase* subscription_;
};

/// Asks for a subscription that is not attached yet.
struct EVSubscriptionDetached {};

/// A subscription. It is attached to its list until destroy() or the destructor, and keeps the list alive until then.
/// Any number of threads may call destroy(), and one of them may go on to the destructor, which waits until the others
/// have left destroy(). When destroy() returns, one of them has detached the subscription, and its reference to the list
/// is dropped.
///
/// The list must not call notify() before the overriding class is constructed or after its destruction has begun. So
/// the destructor of the most derived class calls destroy() first. Where another thread may announce while a
/// subscription is constructed, that class also constructs its base with EVSubscriptionDetached, and calls attach() at
/// the end of its constructor.
template <typename T>
class EVSubscription : public EVNotified<EVSubscriptionBase, typename EVSubscriptionParameter<T>::Callback>,
                       public EVSubscriptionParameter<T> {
    static_assert(isEventValue<T>, "there are event lists of void, int, Quark and std::wstring, and no others");

protected:
    explicit EVSubscription(EVSubscriptionList<T>& list);                 ///< attached to the list
    EVSubscription(EVSubscriptionList<T>& list, EVSubscriptionDetached);  ///< not before attach()
    ~EVSubscription() override = 0;

    /// To be called once, after construction with EVSubscriptionDetached. The list calls notify(), or the step, which
    /// must do the same as notify().
    /// @{
    void attach();
    void attach(typename EVSubscriptionEntry<T>::Step step);
    /// @}

    /// Detaches, and waits for a notify() that runs. Does nothing when the subscription is detached already.
    void destroy();

private:
    ORN::Handle<EVSubscriptionList<T>> list_;
};

extern template class ORN_API_DECLARED EVSubscriptionList<void>;
extern template class ORN_API_DECLARED EVSubscriptionList<int>;
extern template class ORN_API_DECLARED EVSubscriptionList<Quark>;
extern template class ORN_API_DECLARED EVSubscriptionList<std::wstring>;
extern template class ORN_API_DECLARED EVSubscription<void>;
extern template class ORN_API_DECLARED EVSubscription<int>;
extern template class ORN_API_DECLARED EVSubscription<Quark>;
extern template class ORN_API_DECLARED EVSubscription<std::wstring>;

/// Calls a callable for each event, from the end of its construction until its destruction begins:
///
///     EVCallableSubscription subscription{*list, [&](int value) { … }};
template <typename T, typename Callable, typename Callback = typename EVSubscriptionParameter<T>::Callback>
class EVCallableSubscription;

/// EVCallableSubscription, with the parameters taken out of the callback's type.
template <typename T, typename Callable, typename... Arguments>
class [[nodiscard]] EVCallableSubscription<T, Callable, void(Arguments...)> final : public EVSubscription<T> {
public:
    /// Attached when it returns; the callable is moved in.
    [[nodiscard]] EVCallableSubscription(EVSubscriptionList<T>& list, Callable callable)
        : EVSubscription<T>{list, EVSubscriptionDetached{}}, callable_{std::move(callable)} {
        this->attach(step);
    }
    ~EVCallableSubscription() override { this->destroy(); }

    /// What the callable throws is the event's.
    void notify(Arguments... arguments) override { callable_(arguments...); }

private:
    using Entry = EVSubscriptionEntry<T>;

    // The list would find notify() through the virtual table, entry by entry; here the callable is inline.
    static Entry const* step(Entry const* first, Entry const* end, Entry const*& thrower, Arguments... arguments) {
        return callSubscriptions(first, end, thrower, [&](EVSubscription<T>* subscription) {
            static_cast<EVCallableSubscription*>(subscription)->callable_(arguments...);
        });
    }

    Callable callable_;
};

/// The value's type is the list's.
template <typename T, typename Callable>
EVCallableSubscription(EVSubscriptionList<T>&, Callable) -> EVCallableSubscription<T, Callable>;
