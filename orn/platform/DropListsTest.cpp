// The bytes of data objects, each block in memory of exactly its size.
#include "orn/platform/DropListsImp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace {

using Block = std::vector<std::byte>;

struct Bytes {
    Block block;

    Bytes& number(std::uint32_t value, int count) {
        for (; count > 0; --count, value >>= 8) block.push_back(static_cast<std::byte>(value));
        return *this;
    }
    Bytes& text(std::string const& characters) {
        for (char const c : characters) block.push_back(static_cast<std::byte>(c));
        return *this;
    }
};

/// A list of one entry for each text, without its terminator.
Block entries(std::initializer_list<std::string> texts) {
    Bytes bytes;
    for (std::string const& text : texts) bytes.number(static_cast<std::uint32_t>(text.size() + 2), 2).text(text);
    return bytes.block;
}

Block operator+(Block a, Block const& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <typename Read>
auto reading(Block const& block, Read read) {
    auto const exact = std::make_unique_for_overwrite<std::byte[]>(block.size());
    std::copy(block.begin(), block.end(), exact.get());
    return read(std::span<std::byte const>{exact.get(), block.size()});
}

std::vector<Block> itemLists(Block const& block) {
    return reading(block, [](std::span<std::byte const> bytes) {
        std::vector<Block> lists;
        ORN::forEachItemList(bytes, [&](ORN::JoinedItemList const& list) {
            auto const* const data = static_cast<std::byte const*>(list.data());
            lists.emplace_back(data, data + list.size());
        });
        return lists;
    });
}

Block const end(2), parent = entries({"folder", "x"});

/// Two items, at offsets that fit no alignment; the second one is empty: the end of the folder's list.
Block const array =
    Bytes{}.number(2, 4).number(16, 4).number(29, 4).number(27, 4).block + parent + end + entries({"a"}) + end;

std::vector<std::wstring> names(Block const& block) {
    return reading(block, [](std::span<std::byte const> bytes) {
        std::vector<std::wstring> files{L"before"};
        ORN::appendDroppedNames(bytes, files);
        EXPECT_EQ(files.front(), L"before");
        files.erase(files.begin());
        return files;
    });
}

Block dropFiles(std::uint32_t first, std::uint32_t wide) {
    return Bytes{}.number(first, 4).number(7, 4).number(8, 4).number(9, 4).number(wide, 4).block;
}

TEST(DropLists, ItemsAreJoinedToTheirFolder) {
    ASSERT_EQ(array.size(), 34u);
    EXPECT_EQ(itemLists(array), (std::vector<Block>{parent + entries({"a"}) + end, parent + end}));

    // From the desktop, with lengths about that of the buffer on the stack.
    for (std::size_t const length : {1u, 507u, 508u, 509u, 510u, 70000u}) {
        Block item;
        for (std::size_t left = length; left > 0; left -= std::min<std::size_t>(left, 0x8000))
            item = item + entries({std::string(std::min<std::size_t>(left, 0x8000), 'i')});
        Block const block = Bytes{}.number(1, 4).number(12, 4).number(14, 4).block + end + item + end;
        EXPECT_EQ(itemLists(block), std::vector<Block>{item + end}) << length;
    }
}

TEST(DropLists, ItemsThatAreNotWholeAreLeftOut) {
    for (std::size_t size = 0; size < array.size(); ++size) {
        std::vector<Block> expected;
        if (size >= 29) expected.push_back(parent + end);
        EXPECT_EQ(itemLists({array.begin(), array.begin() + static_cast<std::ptrdiff_t>(size)}), expected) << size;
    }
    auto const changed = [](std::size_t place, std::uint32_t value, int count) {
        Block block = array;
        Block const bytes = Bytes{}.number(value, count).block;
        std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(place));
        return itemLists(block);
    };
    Block const first = parent + entries({"a"}) + end, second = parent + end;
    using Lists = std::vector<Block>;
    for (std::uint32_t const outside : {33u, 34u, 35u, 0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(changed(4, outside, 4), Lists{}) << outside;
        EXPECT_EQ(changed(8, outside, 4), Lists{second}) << outside;
        EXPECT_EQ(changed(12, outside, 4), Lists{first}) << outside;
    }
    for (std::uint32_t const count : {1u, 2u, 4u, 5u, 6u, 0xFFFFu})
        EXPECT_EQ(changed(29, count, 2), Lists{second}) << count;
    EXPECT_EQ(changed(16, 1, 2), Lists{});
    EXPECT_EQ(changed(0, 0, 4), Lists{});
    EXPECT_EQ(changed(0, 1, 4), Lists{first});
    EXPECT_EQ(changed(0, 0xFFFFFFFF, 4).front(), first);
}

TEST(DropLists, ABlockWhoseItemsShareItsBytesIsReadToABound) {
    // Half of a megabyte of offsets, all of them of the other half: one list of the shortest entries.
    std::size_t const half = 0x80000, bound = 0x8000000;
    for (std::uint32_t const last : {0u, 1u}) {  // the terminator, or none
        for (bool const parentIsLong : {false, true}) {
            auto const place = static_cast<std::uint32_t>(half);
            std::uint32_t const empty = place + static_cast<std::uint32_t>(half) - 2;
            Bytes bytes;
            bytes.number(0xFFFFFFFF, 4).number(parentIsLong ? place : empty, 4);
            while (bytes.block.size() < half) bytes.number(parentIsLong ? empty : place, 4);
            while (bytes.block.size() < 2 * half - 2) bytes.number(2, 2);
            bytes.number(last, 2);
            std::size_t joined = 0;
            reading(bytes.block, [&](std::span<std::byte const> block) {
                ORN::forEachItemList(block, [&](ORN::JoinedItemList const& list) { joined += list.size(); });
                return 0;
            });
            EXPECT_LE(joined, bound);
            EXPECT_EQ(joined > half, last == 0);
        }
    }
}

TEST(DropLists, NamesEndAtTheEmptyOneOrWhereTheyAreCut) {
    using Names = std::vector<std::wstring>;
    Block const narrow =
        dropFiles(20, 0) + Bytes{}.text("C:\\a").number(0, 1).text("b").number(0, 2).text("c").number(0, 2).block;
    Block wide = dropFiles(23, 1) + Block(3);  // at an odd address
    for (unsigned int const unit : {0x43u, 0x20ACu, 0xD83Du, 0xDE00u, 0u, 0x62u, 0u, 0u, 0x63u, 0u, 0u})
        wide = wide + Bytes{}.number(unit, 2).block;
    std::wstring const first{L'C', static_cast<wchar_t>(0x20AC), static_cast<wchar_t>(0xD83D),
                             static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(names(narrow), (Names{L"C:\\a", L"b"}));
    EXPECT_EQ(names(wide), (Names{first, L"b"}));

    auto const cut = [](Block const& block, std::size_t size) {
        return names({block.begin(), block.begin() + static_cast<std::ptrdiff_t>(size)});
    };
    for (std::size_t size = 0; size <= 27; ++size)
        EXPECT_EQ(cut(narrow, size), size == 27   ? (Names{L"C:\\a", L"b"})
                                     : size >= 25 ? Names{L"C:\\a"}
                                                  : Names{})
            << size;
    for (std::size_t size = 0; size <= 37; ++size)
        EXPECT_EQ(cut(wide, size), size == 37 ? (Names{first, L"b"}) : size >= 33 ? Names{first} : Names{}) << size;

    for (std::uint32_t const place : {0u, 19u, 22u, 0xFFFFFFFFu}) {
        for (std::uint32_t const units : {0u, 1u, 0x80000000u})
            EXPECT_EQ(names(dropFiles(place, units) + Block(2)), Names{});
    }
}

}
