/// A hash index over the stored texts: open addressing, at most three quarters full, nothing is ever removed.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <utility>

/// The halves of the 128-bit product, one over the other, for compilers without such an integer.
constexpr std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) noexcept {
    std::uint64_t const lowMask = 0xFFFFFFFF;
    std::uint64_t const low = (a & lowMask) * (b & lowMask), high = (a >> 32) * (b >> 32);
    std::uint64_t const cross = (a >> 32) * (b & lowMask) + (low >> 32);  // cannot overflow
    std::uint64_t const middle = (a & lowMask) * (b >> 32) + (cross & lowMask);
    return (middle << 32 | (low & lowMask)) ^ (high + (cross >> 32) + (middle >> 32));
}
static_assert(foldedProduct(0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF) == 0xFFFFFFFFFFFFFFFF);  // 1 and 2^64 - 2
static_assert(foldedProduct(0xFEDCBA9876543210, 0x0123456789ABCDEF) == (0x2236D88FE5618CF0 ^ 0x0121FA00AD77D742));

/// One text to look up, measured and hashed once.
class QuarkKey {
public:
    explicit QuarkKey(wchar_t const* text) noexcept
        : text_{text}, units_{std::wcslen(text) + 1}, hash_{hashOf(text, units_ * sizeof *text)} {}

    wchar_t const* text() const noexcept { return text_; }
    std::size_t units() const noexcept { return units_; }  ///< with the terminator
    std::uint64_t hash() const noexcept { return hash_; }

private:
    /// Folds the 128-bit product, so that every bit of the operands reaches the low bits.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
        __extension__ using Product = unsigned __int128;
        Product const product = Product{a} * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
        return foldedProduct(a, b);
#endif
    }

    static std::uint64_t word(char const* bytes, std::size_t size = 8) noexcept {
        std::uint64_t value = 0;
        std::memcpy(&value, bytes, size);
        return value;
    }

    static std::uint64_t hashOf(wchar_t const* text, std::size_t left) noexcept {
        // The fractional digits of two irrational numbers: odd, and without a pattern.
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15, root = 0x6A09E667F3BCC909;
        char const* bytes = reinterpret_cast<char const*>(text);
        std::uint64_t hash = left * golden;
        for (; left >= 16; bytes += 16, left -= 16) hash = mix(word(bytes) ^ golden, word(bytes + 8) ^ hash);
        if (left >= 8) {
            hash = mix(word(bytes) ^ golden, hash ^ root);
            bytes += 8;
            left -= 8;
        }
        return mix(word(bytes, left) ^ root, hash ^ golden);
    }

    wchar_t const* text_;
    std::size_t units_;
    std::uint64_t hash_;
};

/// One thread at a time adds texts, while any number of others look them up without a lock: a slot only ever changes from
/// free to taken. A table that is nearly full gives way to one twice as large, but stays until the end for the threads that
/// still read it.
///
/// The time of a look-up is that of one cache miss. So a slot is one word: the address of the text in its low 48 bits, and
/// the high bits of the hash above, which tell most other texts apart. An address that needs more bits has no slot; the
/// ordered index finds its text all the same.
class QuarkIndex {
public:
    constexpr QuarkIndex() noexcept = default;
    ~QuarkIndex() {
        for (Table* table = table_.load(std::memory_order_relaxed); table != nullptr;)
            ::operator delete(std::exchange(table, table->former));
    }
    QuarkIndex(QuarkIndex const&) = delete;
    QuarkIndex& operator=(QuarkIndex const&) = delete;

    /// The stored text that is equal to the key's. Null when there is none, or when another thread is adding it.
    wchar_t const* find(QuarkKey const& key) const noexcept {
        Table const* const table = table_.load(std::memory_order_acquire);
        if (table == nullptr) return nullptr;
        for (std::size_t i = key.hash() & table->mask;; i = (i + 1) & table->mask) {
            std::uint64_t const slot = table->slots()[i].load(std::memory_order_acquire);
            if (slot == free) return nullptr;
            if ((slot ^ key.hash()) >> addressBits != 0) continue;
            auto const* const text = reinterpret_cast<wchar_t const*>(static_cast<std::uintptr_t>(slot & addressMask));
            if (std::wcscmp(text, key.text()) == 0) return text;
        }
    }

    /// Makes room for one more. Throws std::bad_alloc, with nothing changed.
    void reserveOne() {
        Table* const old = table_.load(std::memory_order_relaxed);
        std::size_t const count = old != nullptr ? old->mask + 1 : 0;
        if ((count_ + 1) * 4 <= count * 3) return;
        Table* const larger = Table::make(count != 0 ? count * 2 : 1024, old);
        for (std::size_t i = 0; i < count; ++i)
            if (std::uint64_t const slot = old->slots()[i].load(std::memory_order_relaxed); slot != free)
                larger->place(old->hashes()[i], slot);
        table_.store(larger, std::memory_order_release);
    }

    /// Adds a text that is not there yet, after reserveOne.
    void insert(std::uint64_t hash, wchar_t const* stored) noexcept {
        std::uint64_t const address = reinterpret_cast<std::uintptr_t>(stored);
        if (address > addressMask) return;
        table_.load(std::memory_order_relaxed)->place(hash, (hash & ~addressMask) | address);
        ++count_;
    }

private:
    using Slot = std::atomic<std::uint64_t>;
    static constexpr int addressBits = 48;
    static constexpr std::uint64_t addressMask = (std::uint64_t{1} << addressBits) - 1, free = 0;

    /// Behind it in one block of memory: the slots, then the hashes of their texts, which only a larger table asks for.
    struct Table {
        std::size_t mask;
        Table* former;

        static Table* make(std::size_t count, Table* former) {
            void* const memory = ::operator new(sizeof(Table) + count * (sizeof(Slot) + sizeof(std::uint64_t)));
            Table* const table = ::new (memory) Table{count - 1, former};
            std::uninitialized_value_construct_n(table->slots(), count);
            return table;
        }

        Slot* slots() noexcept { return reinterpret_cast<Slot*>(this + 1); }
        Slot const* slots() const noexcept { return reinterpret_cast<Slot const*>(this + 1); }
        std::uint64_t* hashes() noexcept { return reinterpret_cast<std::uint64_t*>(slots() + mask + 1); }

        void place(std::uint64_t hash, std::uint64_t slot) noexcept {
            std::size_t i = hash & mask;
            while (slots()[i].load(std::memory_order_relaxed) != free) i = (i + 1) & mask;
            hashes()[i] = hash;
            slots()[i].store(slot, std::memory_order_release);  // a thread that sees the address sees the text
        }
    };

    std::atomic<Table*> table_ = nullptr;
    std::size_t count_ = 0;
};
