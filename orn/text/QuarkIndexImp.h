/// A hash index over the stored texts: open addressing, never more than half full, nothing is ever removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <memory>
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

/// Readers may share it while nobody reserves or inserts.
class QuarkIndex {
public:
    /// The stored text that is equal to the key's; null when there is none.
    wchar_t const* find(QuarkKey const& key) const noexcept {
        if (slots_ == nullptr) return nullptr;
        for (std::size_t i = key.hash() & mask_;; i = (i + 1) & mask_) {
            Slot const& slot = slots_[i];
            if (slot.text == nullptr) return nullptr;
            if (slot.hash == key.hash() && std::wcscmp(slot.text, key.text()) == 0) return slot.text;
        }
    }

    /// Makes room for one more. Throws std::bad_alloc, with nothing changed.
    void reserveOne() {
        std::size_t const slots = slots_ != nullptr ? mask_ + 1 : 0;
        if ((count_ + 1) * 2 <= slots) return;
        std::size_t const more = slots != 0 ? slots * 2 : 1024;
        std::unique_ptr<Slot[]> const old = std::exchange(slots_, std::make_unique<Slot[]>(more));
        mask_ = more - 1;
        for (std::size_t i = 0; i < slots; ++i)
            if (old[i].text != nullptr) place(old[i]);
    }

    /// Of a text that is not there yet, after reserveOne.
    void insert(std::uint64_t hash, wchar_t const* stored) noexcept {
        place({hash, stored});
        ++count_;
    }

private:
    struct Slot {
        std::uint64_t hash;
        wchar_t const* text;  // null: free
    };

    void place(Slot const& slot) noexcept {
        std::size_t i = slot.hash & mask_;
        while (slots_[i].text != nullptr) i = (i + 1) & mask_;
        slots_[i] = slot;
    }

    std::unique_ptr<Slot[]> slots_;
    std::size_t mask_ = 0;
    std::size_t count_ = 0;
};
