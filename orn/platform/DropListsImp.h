/// The two blocks of memory that a data object delivers: lists of the shell's item identifiers, and lists of file names.
/// Another program wrote the bytes, so every count and offset in them is checked: nothing outside of the block is read.
#pragma once

#include "orn/os/Scratch.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace ORN {

class DropBlock {
public:
    explicit DropBlock(std::span<std::byte const> bytes) noexcept : bytes_{bytes} {}

    std::size_t size() const noexcept { return bytes_.size(); }
    std::span<std::byte const> part(std::size_t first, std::size_t end) const {
        return bytes_.subspan(first, end - first);
    }

    /// The unsigned number in so many bytes, the lowest byte first. Nothing where it is not wholly in the block.
    std::optional<std::uint32_t> number(std::size_t offset, std::size_t count) const noexcept {
        if (offset > size() || count > size() - offset) return {};
        std::uint32_t value = 0;
        while (count-- > 0) value = value << 8 | std::to_integer<std::uint32_t>(bytes_[offset + count]);
        return value;
    }

private:
    std::span<std::byte const> bytes_;
};

/// A list of item identifiers that starts at the desktop: the entries of two lists, and the terminating entry.
class JoinedItemList {
public:
    JoinedItemList(std::span<std::byte const> parent, std::span<std::byte const> item)
        : size_{parent.size() + item.size() + 2}, room_{(size_ + 7) / 8} {
        std::byte* const end = copy(item, copy(parent, reinterpret_cast<std::byte*>(room_.data())));
        end[0] = end[1] = std::byte{0};
    }

    void const* data() const noexcept { return room_.data(); }
    std::size_t size() const noexcept { return size_; }

private:
    static std::byte* copy(std::span<std::byte const> from, std::byte* to) noexcept {
        if (!from.empty()) std::memcpy(to, from.data(), from.size());
        return to + from.size();
    }

    std::size_t size_;
    os::Scratch<std::uint64_t, 64> room_;
};

/// Calls use(list) with the joined list of each item of a "Shell IDList Array", in order. The block begins with the number
/// of items, the offset of their folder's list, and the offset of each item's list. An item is left out when its offset or
/// its list is not wholly in the block.
///
/// All offsets may lead to the same long list. Then the work would grow with the square of the block's size, so it ends
/// after 64 bytes of joined lists for each byte of the block, or 64 MiB if that is more. Real selections stay far below
/// that: each item takes at least a hundred bytes, and its folder some hundreds.
template <typename Use>
void forEachItemList(std::span<std::byte const> bytes, Use use) {
    DropBlock const block{bytes};
    std::size_t left = std::max<std::size_t>(0x4000000, 64 * block.size());
    // The entries up to the terminating one; each begins with the count of its bytes.
    auto const list = [&](std::size_t place) -> std::optional<std::span<std::byte const>> {
        std::optional<std::uint32_t> const first = block.number(place, 4);
        if (!first) return {};
        std::size_t end = *first;
        for (;;) {
            std::optional<std::uint32_t> const count = block.number(end, 2);
            if (!count || *count == 1) return {};
            if (*count == 0) return block.part(*first, end);
            end += *count;
            left -= std::min<std::size_t>(left, *count);
        }
    };

    auto const parent = list(4);
    if (!parent) return;
    std::size_t const count = *block.number(0, 4);
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t const place = 8 + 4 * i;
        if (place >= block.size()) return;
        auto const item = list(place);
        left -= std::min(left, parent->size() + 1);
        if (left == 0) return;
        if (item) use(JoinedItemList{*parent, *item});
    }
}

/// Appends the names in a DROPFILES block. The block begins with the offset of the first name, says at byte 16 whether the
/// names are wide, and has an empty name behind the last one. A name that is cut short is left out.
inline void appendDroppedNames(std::span<std::byte const> bytes, std::vector<std::wstring>& files) {
    std::size_t const header = 20;
    DropBlock const block{bytes};
    if (block.size() < header) return;
    std::size_t const width = *block.number(16, 4) != 0 ? 2 : 1;
    std::size_t first = *block.number(0, 4);
    if (first < header) return;
    for (;;) {
        std::size_t end = first;
        std::optional<std::uint32_t> unit;
        while ((unit = block.number(end, width)) && *unit != 0) end += width;
        if (!unit || end == first) return;
        std::wstring name;
        if (width == 1) {
            name = getWCS(reinterpret_cast<char const*>(block.part(first, end).data()), end - first);
        } else {
            for (; first != end; first += 2) name += static_cast<wchar_t>(*block.number(first, 2));
        }
        files.push_back(std::move(name));
        first = end + width;
    }
}

}
