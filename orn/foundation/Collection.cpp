#include "orn/foundation/Collection.h"

#include <algorithm>
#include <typeinfo>

namespace ORN {

CollectionBase::CollectionBase(std::size_t perChunk, std::size_t elementSize, unsigned char* firstChunk) noexcept
    // Up to the second chunk the member firstChunk_ is the whole table, and nothing is allocated.
    : chunks_{&firstChunk_}, perChunk_{perChunk}, elementSize_{elementSize}, firstChunk_{firstChunk} {}

CollectionBase& CollectionBase::operator=(CollectionBase const& other) {
    // Elements of equal size may still be of different types.
    if (typeid(*this) != typeid(other)) throw std::logic_error{"CollectionBase: assignment of another collection"};
    rawAssign(other);
    return *this;
}

CollectionBase::~CollectionBase() {
    if (capacity_ > 1) ::operator delete(chunks_);
}

void CollectionBase::clear() { rawResize(0, nullptr); }
void CollectionBase::pop_back() { rawResize(count_ - 1, nullptr); }

void* CollectionBase::rawPush() { return count_ % perChunk_ == 0 ? addChunk(count_ / perChunk_) : rawIndex(count_); }

void CollectionBase::rawNotPushed() noexcept {
    if (count_ % perChunk_ == 0) freeChunk(count_ / perChunk_);
}

void CollectionBase::rawResize(std::size_t count, void const* source) {
    while (count_ > count) {
        // One chunk a turn: inside a chunk the next element is a step through memory away.
        std::size_t const chunk = (count_ - 1) / perChunk_;
        std::size_t const first = chunk * perChunk_;
        std::size_t const kept = std::max(count, first);
        for (unsigned char* slot = chunks_[chunk] + (count_ - first) * elementSize_; count_ > kept;) {
            slot -= elementSize_;
            rawDestroy(slot);
            --count_;
        }
        // A chunk lives as long as it has an element.
        if (count_ == first) freeChunk(chunk);
    }
    while (count_ < count) {
        std::size_t const run = std::min(perChunk_ - count_ % perChunk_, count - count_);
        append(count_ / perChunk_, run, static_cast<unsigned char const*>(source), 0);
    }
}

void CollectionBase::requireSameSizes(CollectionBase const& other) const {
    if (elementSize_ != other.elementSize_ || perChunk_ != other.perChunk_)
        throw std::logic_error{"CollectionBase::rawInit of another kind of collection"};
}

void CollectionBase::rawInit(CollectionBase const& other) {
    requireSameSizes(other);
    if (count_ != 0) throw std::logic_error{"CollectionBase::rawInit of a collection that is not empty"};
    for (std::size_t chunk = 0; count_ < other.count_; ++chunk)
        append(chunk, std::min(perChunk_, other.count_ - count_), other.chunks_[chunk], elementSize_);
}

void CollectionBase::rawAssign(CollectionBase const& other) {
    if (this == &other) return;
    requireSameSizes(other);
    rawResize(0, nullptr);
    rawInit(other);
}

void CollectionBase::rawTake(CollectionBase& other) noexcept {
    if (other.capacity_ > 1) {
        if (capacity_ > 1) ::operator delete(chunks_);
        chunks_ = std::exchange(other.chunks_, &other.firstChunk_);
        capacity_ = std::exchange(other.capacity_, 1);
        // The other's first chunk lies inside the other; only its elements have come over.
        chunks_[0] = firstChunk_;
    }
    count_ = std::exchange(other.count_, 0);
}

void CollectionBase::rawDiscard() noexcept {
    for (std::size_t chunk = (count_ + perChunk_ - 1) / perChunk_; chunk-- > 1;) freeChunk(chunk);
    count_ = 0;
}

/// Constructs a run of elements, all within one chunk. The source moves on by stride after each of them. What a constructor
/// throws leaves the elements before it counted, and no chunk without elements.
void CollectionBase::append(std::size_t chunk, std::size_t run, unsigned char const* source, std::size_t stride) {
    std::size_t const offset = count_ % perChunk_;
    unsigned char* slot = (offset == 0 ? addChunk(chunk) : chunks_[chunk]) + offset * elementSize_;
    try {
        for (std::size_t end = count_ + run; count_ < end; slot += elementSize_) {
            rawConstruct(slot, source);
            ++count_;
            if (source != nullptr) source += stride;
        }
    } catch (...) {
        rawNotPushed();
        throw;
    }
}

unsigned char* CollectionBase::addChunk(std::size_t index) {
    if (index == capacity_) growTable();
    if (index == 0) return chunks_[0] = firstChunk_;
    return chunks_[index] = static_cast<unsigned char*>(::operator new(perChunk_* elementSize_));
}

void CollectionBase::growTable() {
    // Half as much again, so that a chunk costs constant time on average; the first table holds 11 chunks.
    std::size_t const capacity = capacity_ * 3 / 2 + 10;
    // A size that cannot be computed asks for all memory, and fails as any other that is too large.
    bool const fits = capacity <= max_size() / sizeof *chunks_;
    auto const table = static_cast<unsigned char**>(::operator new(fits ? capacity * sizeof *chunks_ : max_size()));
    std::copy_n(chunks_, capacity_, table);
    if (capacity_ > 1) ::operator delete(chunks_);
    chunks_ = table;
    capacity_ = capacity;
}

void CollectionBase::freeChunk(std::size_t index) noexcept {
    if (index != 0) ::operator delete(chunks_[index]);
}

}
