// The bytes of data objects, each block in memory of exactly its size.
#include "fuzz/Input.h"
#include "orn/platform/DropListsImp.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace std::string_literals;

namespace {

using Blocks = std::vector<std::string>;
using Names = std::vector<std::wstring>;

/// A number's bytes, the least significant one first.
std::string number(std::uint32_t value, int count = 4) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8) bytes += static_cast<char>(value);
    return bytes;
}

/// An entry of an item list; a list ends with an empty one.
std::string entry(std::string const& text) { return number(static_cast<std::uint32_t>(text.size() + 2), 2) + text; }

std::span<std::byte const> bytesOf(fuzz::Exact<char> const& block) {
    return std::as_bytes(std::span{block.data(), block.size()});
}

Blocks itemLists(std::string const& block) {
    fuzz::Exact<char> const exact{block};
    Blocks lists;
    ORN::forEachItemList(bytesOf(exact), [&](ORN::JoinedItemList const& list) {
        lists.emplace_back(static_cast<char const*>(list.data()), list.size());
    });
    return lists;
}

Names names(std::string const& block) {
    fuzz::Exact<char> const exact{block};
    Names files{L"before"};
    ORN::appendDroppedNames(bytesOf(exact), files);
    EXPECT_EQ(files.front(), L"before");
    files.erase(files.begin());
    return files;
}

std::string const end(2, '\0'), parent = entry("folder") + entry("x");

/// Two items, at offsets that fit no alignment; the second one is empty: the end of the folder's list.
std::string const array = number(2) + number(16) + number(29) + number(27) + parent + end + entry("a") + end;
std::string const first = parent + entry("a") + end, second = parent + end;

TEST(DropLists, ItemsAreJoinedToTheirFolder) {
    ASSERT_EQ(array.size(), 34u);
    EXPECT_EQ(itemLists(array), (Blocks{first, second}));

    // From the desktop, with lengths about that of the buffer on the stack.
    for (std::size_t const length : {1u, 507u, 508u, 509u, 510u, 70000u}) {
        std::string item;
        for (std::size_t left = length; left > 0; left -= std::min<std::size_t>(left, 0x8000))
            item += entry(std::string(std::min<std::size_t>(left, 0x8000), 'i'));
        EXPECT_EQ(itemLists(number(1) + number(12) + number(14) + end + item + end), Blocks{item + end}) << length;
    }
}

TEST(DropLists, ItemsThatAreNotWholeAreLeftOut) {
    for (std::size_t size = 0; size < array.size(); ++size)
        EXPECT_EQ(itemLists(array.substr(0, size)), size >= 29 ? Blocks{second} : Blocks{}) << size;
    auto const changed = [](std::size_t place, std::string const& bytes) {
        return itemLists(std::string{array}.replace(place, bytes.size(), bytes));
    };
    for (std::uint32_t const outside : {33u, 34u, 35u, 0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(changed(4, number(outside)), Blocks{}) << outside;
        EXPECT_EQ(changed(8, number(outside)), Blocks{second}) << outside;
        EXPECT_EQ(changed(12, number(outside)), Blocks{first}) << outside;
    }
    for (std::uint32_t const count : {1u, 2u, 4u, 5u, 6u, 0xFFFFu})
        EXPECT_EQ(changed(29, number(count, 2)), Blocks{second}) << count;
    EXPECT_EQ(changed(16, number(1, 2)), Blocks{});
    EXPECT_EQ(changed(0, number(0)), Blocks{});
    EXPECT_EQ(changed(0, number(1)), Blocks{first});
    EXPECT_EQ(changed(0, number(0xFFFFFFFF)).front(), first);
}

TEST(DropLists, ABlockWhoseItemsShareItsBytesIsReadToABound) {
    // Half of a megabyte of offsets, all of them of the other half: one list of the shortest entries.
    std::uint32_t const half = 0x80000, empty = 2 * half - 2, bound = 0x8000000;
    for (std::uint32_t const last : {0u, 1u}) {  // the terminator, or none
        for (bool const parentIsLong : {false, true}) {
            std::string block = number(0xFFFFFFFF) + number(parentIsLong ? half : empty);
            while (block.size() < half) block += number(parentIsLong ? empty : half);
            while (block.size() < empty) block += number(2, 2);
            fuzz::Exact<char> const exact{block + number(last, 2)};
            std::size_t joined = 0;
            ORN::forEachItemList(bytesOf(exact), [&](auto const& list) { joined += list.size(); });
            EXPECT_LE(joined, bound);
            EXPECT_EQ(joined > half, last == 0);
        }
    }
}

TEST(DropLists, NamesEndAtTheEmptyOneOrWhereTheyAreCut) {
    auto const header = [](std::uint32_t place, std::uint32_t wide) {
        return number(place) + number(7) + number(8) + number(9) + number(wide);
    };
    std::wstring const strange{L'C', L'\u20AC', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    std::string wide = header(23, 1) + "odd";  // at an odd address
    for (wchar_t const unit : strange + L"\0b\0\0c\0\0"s) wide += number(static_cast<std::uint32_t>(unit), 2);
    struct {
        std::string block;
        Names names;
        std::size_t one, both;  // the sizes from which on a name is whole
    } const cases[] = {{header(20, 0) + "C:\\a\0b\0\0c\0\0"s, {L"C:\\a", L"b"}, 25, 27},
                       {wide, {strange, L"b"}, 33, 37}};
    for (auto const& [block, expected, one, both] : cases)
        for (std::size_t size = 0; size <= block.size(); ++size)
            EXPECT_EQ(names(block.substr(0, size)),
                      (Names{expected.begin(), expected.begin() + (size >= one) + (size >= both)}))
                << size;
    for (std::uint32_t const place : {0u, 19u, 22u, 0xFFFFFFFFu})
        for (std::uint32_t const units : {0u, 1u, 0x80000000u}) EXPECT_EQ(names(header(place, units) + end), Names{});
}

}
