/// Room for a conversion's result, whose size is often small and never known beforehand.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace ORN::os {

/// An array of elements without values. It lies in the object itself up to N elements, on the heap beyond that.
template <typename T, std::size_t N>
class Scratch {
public:
    Scratch() noexcept : data_{own_} {}                                // N elements
    explicit Scratch(std::size_t size) : Scratch{} { reserve(size); }  // at least so many
    Scratch(Scratch const&) = delete;
    Scratch& operator=(Scratch const&) = delete;

    T* data() noexcept { return data_; }
    T const* data() const noexcept { return data_; }
    std::size_t size() const noexcept { return size_; }

    /// Makes room for at least so many elements. Those that were there lose their values when it grows.
    void reserve(std::size_t size) {
        if (size > size_) take(new T[size], size);
    }

    /// The same; false, with nothing changed, when there is no memory.
    bool tryReserve(std::size_t size) noexcept {
        if (size > size_) take(new (std::nothrow) T[size], size);
        return size <= size_;
    }

private:
    void take(T* larger, std::size_t size) noexcept {
        if (larger == nullptr) return;
        heap_.reset(larger);
        data_ = larger;
        size_ = size;
    }

    T* data_;
    std::size_t size_ = N;
    std::unique_ptr<T[]> heap_;
    T own_[N];
};

}
