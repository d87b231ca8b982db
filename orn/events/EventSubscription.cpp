#include "orn/events/EVSubscriptionListImp.h"

template <typename T>
ORN::Handle<EVSubscriptionList<T>> EVSubscriptionList<T>::create() {
    return ORN::Handle<EVSubscriptionList>{new EVSubscriptionListImp<T>};
}

template <typename T>
EVSubscriptionList<T>::~EVSubscriptionList() = default;

// For lists of applications, which know only of insert().
template <typename T>
void EVSubscriptionList<T>::insertStepped(EVSubscription<T>* subscription, typename EVSubscriptionEntry<T>::Step) {
    insert(subscription);
}

EVSubscriptionBase::~EVSubscriptionBase() = default;

template <typename T>
EVSubscription<T>::EVSubscription(EVSubscriptionList<T>& list) : EVSubscription{list, EVSubscriptionDetached{}} {
    attach();
}

template <typename T>
EVSubscription<T>::EVSubscription(EVSubscriptionList<T>& list, EVSubscriptionDetached) : list_{&list} {}

template <typename T>
EVSubscription<T>::~EVSubscription() {
    // Waits for the threads that have not left destroy() yet.
    ExclusiveLock const alone{this->detaching_};
    // The overriding class has detached it. This is for a constructor of that class that throws.
    if (!list_.null()) list_->erase(this);
}

template <typename T>
void EVSubscription<T>::attach() {
    list_->insert(this);
}

template <typename T>
void EVSubscription<T>::attach(typename EVSubscriptionEntry<T>::Step step) {
    list_->insertStepped(this, step);
}

template <typename T>
void EVSubscription<T>::destroy() {
    // Of threads that detach at once the first does it. The others wait, so that the subscription is detached for all of
    // them when they go on. Each counts as a shared holder as long as it uses the word, so that the first one cannot
    // destroy the subscription meanwhile. So the exclusive bit waits for another exclusive bit only.
    ReadWriteLock<readWriteLockShared, 0> const inside{this->detaching_};
    ReadWriteLock<readWriteLockExclusive, readWriteLockWriter> const detaching{this->detaching_};
    if (list_.null()) return;
    list_->erase(this);
    list_.reset(nullptr);
}

template class ORN_API_DEFINED EVSubscriptionList<void>;
template class ORN_API_DEFINED EVSubscriptionList<int>;
template class ORN_API_DEFINED EVSubscriptionList<Quark>;
template class ORN_API_DEFINED EVSubscriptionList<std::wstring>;
template class ORN_API_DEFINED EVSubscription<void>;
template class ORN_API_DEFINED EVSubscription<int>;
template class ORN_API_DEFINED EVSubscription<Quark>;
template class ORN_API_DEFINED EVSubscription<std::wstring>;
