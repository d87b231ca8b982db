/// Growable sequences in equal-sized chunks that never move, so that elements keep their addresses while others are appended.
#pragma once

#include "orn/Export.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace ORN {

/// The untyped core: element i lies in chunk i / perChunk at byte (i % perChunk) · elementSize. Chunk 0 is storage of the
/// derived object and is never freed here; the others come from operator new, so elements have at most its alignment.
///
/// A derived class constructs and destroys single elements; its destructor calls clear(), which frees every other chunk.
class ORN_API CollectionBase {
public:
    using size_type = std::size_t;  ///< The type of counts and indices.

    /// Copies the fields alone; the other collection goes on owning elements, chunks and table. The copy constructor of a
    /// derived class therefore calls the protected constructor with its own first chunk instead, and then rawInit.
    CollectionBase(CollectionBase const&) noexcept = default;

    /// Does rawAssign. Throws std::logic_error, and changes nothing, when the other object is of another class.
    CollectionBase& operator=(CollectionBase const& other);

    virtual ~CollectionBase();  ///< Frees the table, but neither elements nor chunks.

    /// As of standard containers; max_size is the largest size_type.
    /// @{
    size_type size() const noexcept { return count_; }
    bool empty() const noexcept { return count_ == 0; }
    constexpr size_type max_size() const noexcept { return static_cast<size_type>(-1); }
    /// @}

    void clear();     ///< Destroys the elements from the back and frees all chunks but the first.
    void pop_back();  ///< Destroys the last element. The collection must not be empty.

protected:
    /// perChunk is not 0; firstChunk has room for that many elements and lives as long as this object.
    CollectionBase(std::size_t perChunk, std::size_t elementSize, unsigned char* firstChunk) noexcept;

    /// The slot of element size(), its chunk allocated. The caller constructs the element there and calls rawPushed,
    /// or, when the constructor throws, rawNotPushed.
    void* rawPush();
    void rawPushed(std::size_t count) noexcept { count_ = count; }  ///< Sets the count, which includes the new element.
    void rawNotPushed() noexcept;                                   ///< Frees the chunk that rawPush allocated.

    /// The addresses of an element (the index is not checked), of the first and of the last element, and of the table of chunks.
    /// @{
    void* rawIndex(std::size_t i) const noexcept { return chunks_[i / perChunk_] + i % perChunk_ * elementSize_; }
    void* rawFront() const noexcept { return firstChunk_; }
    void* rawBack() const noexcept { return rawIndex(count_ - 1); }
    unsigned char** rawChunks() const noexcept { return chunks_; }
    /// @}

    /// Destroys elements from the back, or appends copies of the element at source (null: default elements).
    void rawResize(std::size_t count, void const* source);

    /// Appends copies of the other's elements to this empty collection. Throws std::logic_error, and changes nothing, when
    /// the other's elements or chunks have another size, or this collection has elements. The caller must know that both
    /// have elements of one type.
    void rawInit(CollectionBase const& other);

    /// Compares the sizes, destroys the own elements, and does rawInit. Does nothing when the other is this collection.
    void rawAssign(CollectionBase const& other);

    /// Takes over the other's count and all chunks but chunk 0, whose elements the caller has moved already. This collection
    /// must be empty; afterwards the other one is.
    void rawTake(CollectionBase& other) noexcept;

    /// clear() for elements that need no destruction.
    void rawDiscard() noexcept;

private:
    virtual void rawConstruct(void* slot, void const* source) = 0;  ///< A copy of source; for null a default element.
    virtual void rawDestroy(void* slot) = 0;

    void requireSameSizes(CollectionBase const& other) const;
    unsigned char* addChunk(std::size_t index);
    void growTable();
    void freeChunk(std::size_t index) noexcept;
    void append(std::size_t chunk, std::size_t run, unsigned char const* source, std::size_t stride);

    std::size_t count_ = 0;
    unsigned char** chunks_;
    std::size_t capacity_ = 1;  // of the table; 1 means that the table is firstChunk_ itself
    std::size_t perChunk_;
    std::size_t elementSize_;
    unsigned char* firstChunk_;
};

/// A sequence of T; the first PerChunk elements lie inside the object and need no allocation. Iterators stay valid while
/// the collection grows. What a constructor throws leaves the elements before it in place.
template <typename T, std::size_t PerChunk = 16>
class Collection final : public CollectionBase {
    static_assert(PerChunk > 0);
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "chunks have the alignment of operator new");

    template <typename Element>
    class Iterator;

public:
    /// As of standard containers; iterators are random-access.
    /// @{
    using value_type = T;
    using reference = T&;
    using const_reference = T const&;
    using difference_type = std::ptrdiff_t;
    using iterator = Iterator<T>;
    using const_iterator = Iterator<T const>;
    /// @}

    Collection() noexcept : CollectionBase{PerChunk, sizeof(T), first_} {}  ///< Makes an empty collection.
    ~Collection() override { clear(); }

    /// Copies of the other's elements.
    /// @{
    Collection(Collection const& other) requires std::copy_constructible<T> : Collection{} { rawInit(other); }
    Collection& operator=(Collection const& other) requires std::copy_constructible<T> {
        rawAssign(other);
        return *this;
    }
    /// @}

    /// Moves the elements of the first chunk and takes the other chunks over; the other collection is empty afterwards.
    /// @{
    Collection(Collection&& other) noexcept(std::is_nothrow_move_constructible_v<T>) : Collection{} { take(other); }
    Collection& operator=(Collection&& other) noexcept(std::is_nothrow_move_constructible_v<T>) {
        if (this == &other) return *this;
        clear();
        take(other);
        return *this;
    }
    /// @}

    /// Destroys the elements, frees all chunks but the first.
    void clear() {
        if constexpr (std::is_trivially_destructible_v<T>)
            rawDiscard();
        else
            CollectionBase::clear();
    }

    /// The element must be there; nothing is checked.
    /// @{
    T& operator[](size_type i) noexcept { return *at(i); }
    T const& operator[](size_type i) const noexcept { return *at(i); }
    T& front() noexcept { return *at(0); }
    T const& front() const noexcept { return *at(0); }
    T& back() noexcept { return *at(size() - 1); }
    T const& back() const noexcept { return *at(size() - 1); }
    /// @}

    /// Valid while the collection grows; end() is the index size().
    /// @{
    iterator begin() noexcept { return {this, 0}; }
    iterator end() noexcept { return {this, size()}; }
    const_iterator begin() const noexcept { return {this, 0}; }
    const_iterator end() const noexcept { return {this, size()}; }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    /// @}

    /// Appends. What the element's constructor throws leaves the collection as it was.
    /// @{
    void push_back(T const& value) { emplace_back(value); }
    void push_back(T&& value) { emplace_back(std::move(value)); }
    template <typename... Arguments>
    T& emplace_back(Arguments&&... arguments) {
        // The count is read once: for all that the compiler knows, the new element may have been written over it.
        size_type const count = size();
        void* const slot = count % PerChunk == 0 ? rawPush() : at(count);
        T* element;
        if constexpr (std::is_nothrow_constructible_v<T, Arguments...>) {
            element = ::new (slot) T(std::forward<Arguments>(arguments)...);
        } else {
            try {
                element = ::new (slot) T(std::forward<Arguments>(arguments)...);
            } catch (...) {
                rawNotPushed();
                throw;
            }
        }
        rawPushed(count + 1);
        return *element;
    }
    /// @}

    /// Destroys elements from the back, or appends value-initialised ones or copies.
    /// @{
    void resize(size_type count) requires std::default_initializable<T> { rawResize(count, nullptr); }
    void resize(size_type count, T const& value) requires std::copy_constructible<T> {
        rawResize(count, std::addressof(value));
    }
    /// @}

private:
    void rawConstruct(void* slot, void const* source) override {
        if (source != nullptr) {
            if constexpr (std::copy_constructible<T>)
                ::new (slot) T(*static_cast<T const*>(source));
            else
                throw std::logic_error{"Collection: the elements cannot be copied"};
        } else {
            if constexpr (std::default_initializable<T>)
                ::new (slot) T();
            else
                throw std::logic_error{"Collection: the elements have no default"};
        }
    }
    void rawDestroy(void* slot) override { std::destroy_at(static_cast<T*>(slot)); }

    T* at(size_type i) const noexcept {
        return std::launder(reinterpret_cast<T*>(rawChunks()[i / PerChunk]) + i % PerChunk);
    }

    void take(Collection& other) {
        size_type const inside = other.size() < PerChunk ? other.size() : PerChunk;
        size_type moved = 0;
        try {
            for (; moved < inside; ++moved) ::new (static_cast<T*>(rawFront()) + moved) T(std::move(other[moved]));
        } catch (...) {
            std::destroy_n(static_cast<T*>(rawFront()), moved);
            throw;
        }
        std::destroy_n(static_cast<T*>(other.rawFront()), inside);
        rawTake(other);
    }

    alignas(T) unsigned char first_[PerChunk * sizeof(T)];
};

/// A place in a collection: the collection and an index.
template <typename T, std::size_t PerChunk>
template <typename Element>
class Collection<T, PerChunk>::Iterator {
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using reference = Element&;
    using pointer = Element*;

    Iterator() noexcept = default;
    Iterator(Collection const* collection, size_type index) noexcept : collection_{collection}, index_{index} {}
    operator Iterator<T const>() const noexcept { return {collection_, index_}; }

    reference operator*() const noexcept { return *collection_->at(index_); }
    pointer operator->() const noexcept { return collection_->at(index_); }
    reference operator[](difference_type n) const noexcept { return *(*this + n); }

    Iterator& operator++() noexcept { return *this += 1; }
    Iterator& operator--() noexcept { return *this -= 1; }
    Iterator operator++(int) noexcept { return std::exchange(*this, *this + 1); }
    Iterator operator--(int) noexcept { return std::exchange(*this, *this - 1); }
    Iterator& operator+=(difference_type n) noexcept {
        index_ += static_cast<size_type>(n);
        return *this;
    }
    Iterator& operator-=(difference_type n) noexcept { return *this += -n; }
    friend Iterator operator+(Iterator i, difference_type n) noexcept { return i += n; }
    friend Iterator operator+(difference_type n, Iterator i) noexcept { return i += n; }
    friend Iterator operator-(Iterator i, difference_type n) noexcept { return i -= n; }
    friend difference_type operator-(Iterator a, Iterator b) noexcept {
        return static_cast<difference_type>(a.index_ - b.index_);
    }
    friend bool operator==(Iterator a, Iterator b) noexcept { return a.index_ == b.index_; }
    friend std::strong_ordering operator<=>(Iterator a, Iterator b) noexcept { return a.index_ <=> b.index_; }

private:
    Collection const* collection_ = nullptr;
    size_type index_ = 0;
};

}
