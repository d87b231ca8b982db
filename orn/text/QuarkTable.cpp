#include "orn/text/QuarkTableImp.h"

#include "orn/threading/Lock.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

bool QuarkOrdinalLess::operator()(wchar_t const* a, wchar_t const* b) const noexcept {
    while (*a == *b && *b != 0) ++a, ++b;
    return static_cast<std::uint32_t>(*a) < static_cast<std::uint32_t>(*b);
}

QuarkTable::~QuarkTable() = default;

namespace {

constinit QuarkTableImp processTable;

}

QuarkTable& QuarkTable::quarkTable() noexcept { return processTable; }

QuarkTableImp::~QuarkTableImp() {
    while (head_ != nullptr) ::operator delete(std::exchange(head_, head_->previous));
}

wchar_t const* QuarkTableImp::value(wchar_t const* stored) const { return stored; }

wchar_t const* QuarkTableImp::intern(wchar_t const* text) {
    QuarkKey const key{text};
    if (wchar_t const* const known = known_.find(key)) return known;
    // Another thread may have added it meanwhile: the ordered index decides.
    ExclusiveLock const lock{lock_};
    return add(key);
}

wchar_t const* QuarkTableImp::add(QuarkKey const& key) {
    std::size_t const units = key.units();
    if (units > freeUnits_) addBlock(std::max(units, blockUnits));
    std::copy_n(key.text(), units, nextFree_);  // tentative: the next new text overwrites it unless the index takes it

    known_.reserveOne();
    if (!index_) index_.emplace();
    auto const [entry, inserted] = index_->insert(nextFree_);
    if (inserted) {
        known_.insert(key.hash(), nextFree_);
        nextFree_ += units;
        freeUnits_ -= units;
    }
    return *entry;
}

void QuarkTableImp::addBlock(std::size_t units) {
    void* const memory = ::operator new(sizeof(Block) + units * sizeof(wchar_t));
    head_ = ::new (memory) Block{head_};
    nextFree_ = reinterpret_cast<wchar_t*>(head_ + 1);
    freeUnits_ = units;
}
