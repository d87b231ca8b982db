/// The process's table of interned texts. It keeps the texts one after another in large blocks, with an ordered index over
/// them. A hash index finds known texts without the lock; new ones are added under it, one at a time.
#pragma once

#include "orn/os/Types.h"
#include "orn/text/QuarkIndexImp.h"
#include "orn/text/QuarkTable.h"

#include <optional>
#include <set>

/// The order of code units, not of code points: a surrogate sorts below U+E000 to U+FFFF.
struct QuarkOrdinalLess {
    bool operator()(wchar_t const* a, wchar_t const* b) const noexcept;
};

class QuarkTableImp final : public QuarkTable {
public:
    static constexpr std::size_t blockUnits = 8192;  ///< of text in a block, unless one text needs more

    constexpr QuarkTableImp() noexcept = default;
    QuarkTableImp(QuarkTableImp const&) = delete;
    QuarkTableImp& operator=(QuarkTableImp const&) = delete;
    ~QuarkTableImp() override;

    wchar_t const* intern(wchar_t const* text) override;
    wchar_t const* value(wchar_t const* stored) const override;

private:
    struct Block {
        Block* previous;
    };

    wchar_t const* add(QuarkKey const& key);
    void addBlock(std::size_t units);

    LONG volatile lock_ = 0;
    std::optional<std::set<wchar_t const*, QuarkOrdinalLess>> index_;  // engaged by the first text
    Block* head_ = nullptr;
    wchar_t* nextFree_ = nullptr;
    std::size_t freeUnits_ = 0;
    QuarkIndex known_;
};
