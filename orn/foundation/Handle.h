/// Objects shared between owners: a reference count inside the object, and the handles that hold it.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <atomic>
#include <concepts>
#include <cstddef>
#include <utility>

namespace ORN {

/// What a handle needs of an object.
class ORN_API IHandlable {
public:
    virtual void adref() const = 0;  ///< adds one reference; does not throw
    virtual void deref() const = 0;  ///< drops one reference, and destroys the object with the last; does not throw
    virtual ~IHandlable();
};

/// The base of classes whose objects are shared. An object starts with no references, is made with `new`, and deletes
/// itself when its last handle goes; one that no handle ever took is its maker's to delete. References may be added and
/// dropped on any number of threads at once.
///
/// While the destructor runs the count stands at 1, so a destructor may wrap `this` in handles and drop them again.
class ORN_API Handlable : public IHandlable {
protected:
    constexpr Handlable() noexcept = default;
    constexpr Handlable(Handlable const&) noexcept : IHandlable{} {}   ///< a copy has no references yet
    Handlable& operator=(Handlable const&) noexcept { return *this; }  ///< both objects keep their references
    ~Handlable() override;

private:
    friend class HandleBase;

    void adref() const override { ++count_; }
    void deref() const override {
        if (--count_ == 0) destroy();
    }
    void destroy() const;

    mutable std::atomic<LONG> count_{0};
};

/// The operations of every handle on the counted object.
class ORN_API HandleBase {
protected:
    constexpr HandleBase() noexcept = default;
    constexpr HandleBase(HandleBase const&) noexcept = default;          ///< there is nothing to copy
    HandleBase& operator=(HandleBase const&) noexcept { return *this; }  ///< does nothing
    ~HandleBase() = default;

    /// Adds a reference; nothing for null.
    static void adref(IHandlable const* p) {
        if (p != nullptr) p->adref();
    }

    /// Drops a reference; nothing for null.
    static void deref(IHandlable const* p) {
        if (p != nullptr) p->deref();
    }

    /// The number of references at this moment; p must not be null.
    static LONG refC(Handlable const* p) noexcept { return p->count_.load(std::memory_order_relaxed); }
};

/// A pointer that owns one reference to its object, or null, which is written nullptr. A raw pointer becomes a handle only
/// where that is said, since the object may be deleted with it: `return Handle<T>{p};`.
///
/// Handles to one object may be used on several threads; a single handle may not be changed by one thread while another
/// uses it.
template <typename T>
class Handle : public HandleBase {
public:
    constexpr Handle() noexcept = default;        ///< null
    constexpr Handle(std::nullptr_t) noexcept {}  ///< null
    explicit Handle(T* p) noexcept;               ///< adds a reference; null gives a null handle
    Handle(Handle const& other) noexcept;         ///< adds a reference
    constexpr Handle(Handle&& other) noexcept : pointer_{std::exchange(other.pointer_, nullptr)} {}  ///< leaves null

    /// From a handle to a derived class, which it shares or leaves null.
    /// @{
    template <typename Derived>
    requires(std::convertible_to<Derived*, T*> && !std::same_as<Derived, T>) Handle(Handle<Derived> const& other)
    noexcept : Handle{static_cast<T*>(other.get())} {}
    template <typename Derived>
    requires(std::convertible_to<Derived*, T*> && !std::same_as<Derived, T>) Handle(Handle<Derived>&& other)
    noexcept : pointer_{std::exchange(other.pointer_, nullptr)} {}
    /// @}

    ~Handle();  ///< drops its reference

    /// The object, which the handle goes on owning. It must not be null for the last two.
    /// @{
    T* get() const noexcept;
    T* operator->() const noexcept;
    T& operator*() const noexcept;
    /// @}

    /// Whether there is no object, or is one.
    /// @{
    bool null() const noexcept;
    explicit operator bool() const noexcept { return pointer_ != nullptr; }
    /// @}

    /// True when the object has no other reference; meaningful while no other thread takes or drops one.
    bool isLastHandle() const noexcept;

    /// Takes the new object before it drops the old one, so assignment to the handle's own object never destroys it.
    Handle& operator=(Handle const& other) noexcept;

    /// Takes the other's reference and leaves it null.
    Handle& operator=(Handle&& other) noexcept {
        replace(std::exchange(other.pointer_, nullptr));
        return *this;
    }
    void reset(T* p) noexcept;          ///< as assignment of Handle{p}
    void swap(Handle& other) noexcept;  ///< not atomic

    /// Identity of the objects, not equality of their values.
    /// @{
    bool operator==(Handle const& other) const noexcept;
    bool operator!=(Handle const& other) const noexcept;
    bool operator==(std::nullptr_t) const noexcept { return pointer_ == nullptr; }
    bool operator!=(std::nullptr_t) const noexcept { return pointer_ != nullptr; }
    /// @}

private:
    template <typename>
    friend class Handle;

    void replace(T* owned) noexcept { deref(std::atomic_ref<T*>{pointer_}.exchange(owned)); }

    T* pointer_ = nullptr;
};

// Outside of the class, because what is inside counts as inline, and inline members of an instantiation are not exported
// from a DLL.
template <typename T>
Handle<T>::Handle(T* p) noexcept : pointer_{p} {
    adref(p);
}
template <typename T>
Handle<T>::Handle(Handle const& other) noexcept : HandleBase{other}, pointer_{other.pointer_} {
    adref(pointer_);
}
template <typename T>
Handle<T>::~Handle() {
    deref(pointer_);
}

template <typename T>
T* Handle<T>::get() const noexcept {
    return pointer_;
}
template <typename T>
T* Handle<T>::operator->() const noexcept {
    return pointer_;
}
template <typename T>
T& Handle<T>::operator*() const noexcept {
    return *pointer_;
}
template <typename T>
bool Handle<T>::null() const noexcept {
    return pointer_ == nullptr;
}
template <typename T>
bool Handle<T>::isLastHandle() const noexcept {
    return pointer_ != nullptr && refC(pointer_) == 1;
}

template <typename T>
Handle<T>& Handle<T>::operator=(Handle const& other) noexcept {
    reset(other.pointer_);
    return *this;
}
template <typename T>
void Handle<T>::reset(T* p) noexcept {
    adref(p);
    replace(p);
}
template <typename T>
void Handle<T>::swap(Handle& other) noexcept {
    std::swap(pointer_, other.pointer_);
}

template <typename T>
bool Handle<T>::operator==(Handle const& other) const noexcept {
    return pointer_ == other.pointer_;
}
template <typename T>
bool Handle<T>::operator!=(Handle const& other) const noexcept {
    return pointer_ != other.pointer_;
}

/// A new object, made of the arguments, and its first handle: makeHandle<Layer>(name).
template <std::derived_from<IHandlable> T, typename... Arguments>
[[nodiscard]] Handle<T> makeHandle(Arguments&&... arguments) {
    return Handle<T>{new T(std::forward<Arguments>(arguments)...)};
}

/// A handle to the same object as one of a class derived from it; null when it is none, or there is no object:
/// handleCast<Derived>(handle).
template <typename Derived, typename T>
[[nodiscard]] Handle<Derived> handleCast(Handle<T> const& handle) noexcept {
    return Handle<Derived>{dynamic_cast<Derived*>(handle.get())};
}

}
