/// Objects shared between owners: a reference count inside the object, and the handles that hold it.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <atomic>
#include <concepts>
#include <cstddef>
#include <utility>

namespace ORN {

/// The interface through which handles count references to an object.
class ORN_API IHandlable {
public:
    virtual void adref() const = 0;  ///< Adds a reference. Does not throw.
    virtual void deref() const = 0;  ///< Drops a reference; destroys the object with the last one. Does not throw.
    virtual ~IHandlable();
};

/// The base of classes whose objects are shared. An object is made with `new` and starts with no references. It deletes
/// itself when its last handle is destroyed; until a first handle has taken it, its maker must delete it. Any number of
/// threads may add and drop references at once.
///
/// While the destructor runs, the count is 1, so that a destructor may create handles to `this` and drop them again.
class ORN_API Handlable : public IHandlable {
protected:
    constexpr Handlable() noexcept = default;
    constexpr Handlable(Handlable const&) noexcept : IHandlable{} {}   ///< A copy has no references yet.
    Handlable& operator=(Handlable const&) noexcept { return *this; }  ///< Both objects keep their own references.
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

/// What all handles do with the object that they count.
class ORN_API HandleBase {
protected:
    constexpr HandleBase() noexcept = default;
    constexpr HandleBase(HandleBase const&) noexcept = default;          ///< Copies nothing: the base has no members.
    HandleBase& operator=(HandleBase const&) noexcept { return *this; }  ///< Does nothing.
    ~HandleBase() = default;

    /// Adds a reference. Does nothing for null.
    static void adref(IHandlable const* p) {
        if (p != nullptr) p->adref();
    }

    /// Drops a reference. Does nothing for null.
    static void deref(IHandlable const* p) {
        if (p != nullptr) p->deref();
    }

    /// The number of references at this moment; p must not be null.
    static LONG refC(Handlable const* p) noexcept { return p->count_.load(std::memory_order_relaxed); }
};

/// A pointer that owns one reference to its object, or is null. The conversion from a raw pointer is explicit, because the
/// object may be deleted together with the handle: `return Handle<T>{p};`.
///
/// Handles to one object may be used on several threads; a single handle may not be changed by one thread while another
/// uses it.
template <typename T>
class Handle : public HandleBase {
public:
    /// A null handle.
    /// @{
    constexpr Handle() noexcept = default;
    constexpr Handle(std::nullptr_t) noexcept {}
    /// @}

    /// Another handle to the object, to which it adds a reference. Null gives a null handle.
    /// @{
    explicit Handle(T* p) noexcept;
    Handle(Handle const& other) noexcept;
    /// @}

    /// Takes the other's reference and leaves the other handle null.
    constexpr Handle(Handle&& other) noexcept : pointer_{std::exchange(other.pointer_, nullptr)} {}

    /// From a handle to a derived class: shares its object, or takes its reference and leaves it null.
    /// @{
    template <typename Derived>
    requires(std::convertible_to<Derived*, T*> && !std::same_as<Derived, T>) Handle(Handle<Derived> const& other)
    noexcept : Handle{static_cast<T*>(other.get())} {}
    template <typename Derived>
    requires(std::convertible_to<Derived*, T*> && !std::same_as<Derived, T>) Handle(Handle<Derived>&& other)
    noexcept : pointer_{std::exchange(other.pointer_, nullptr)} {}
    /// @}

    ~Handle();  ///< Drops the reference.

    /// The object, which the handle goes on owning. The operators need a handle that is not null.
    /// @{
    T* get() const noexcept;
    T* operator->() const noexcept;
    T& operator*() const noexcept;
    /// @}

    /// Whether the handle is null; whether it is not.
    /// @{
    bool null() const noexcept;
    explicit operator bool() const noexcept { return pointer_ != nullptr; }
    /// @}

    /// True when the object has no other reference. The answer holds only while no other thread adds or drops one.
    bool isLastHandle() const noexcept;

    /// Takes the new object before it drops the old one, so assignment to the handle's own object never destroys it.
    Handle& operator=(Handle const& other) noexcept;

    /// Takes the other's reference and leaves it null.
    Handle& operator=(Handle&& other) noexcept {
        replace(std::exchange(other.pointer_, nullptr));
        return *this;
    }
    void reset(T* p) noexcept;          ///< The same as assignment of Handle{p}.
    void swap(Handle& other) noexcept;  ///< Swaps the objects. No other thread may use either handle meanwhile.

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

// Outside of the class, because members that are defined inside are inline, and a DLL does not export the inline members of
// an explicit instantiation.
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

/// Makes an object from the arguments, and returns its first handle: makeHandle<Layer>(name).
template <std::derived_from<IHandlable> T, typename... Arguments>
[[nodiscard]] Handle<T> makeHandle(Arguments&&... arguments) {
    return Handle<T>{new T(std::forward<Arguments>(arguments)...)};
}

/// A handle to the same object through a derived class: handleCast<Derived>(handle). Null when the object is not of that
/// class, and for a null handle.
template <typename Derived, typename T>
[[nodiscard]] Handle<Derived> handleCast(Handle<T> const& handle) noexcept {
    return Handle<Derived>{dynamic_cast<Derived*>(handle.get())};
}

}
