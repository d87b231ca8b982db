#include "orn/foundation/Collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <ranges>

using ORN::Collection;
using ORN::CollectionBase;

namespace {

/// Four ints a chunk over the bare base, with a record of what is constructed and destroyed.
class Ints : public CollectionBase {
public:
    Ints() : CollectionBase{4, sizeof(int), reinterpret_cast<unsigned char*>(first)} {}
    Ints(Ints const&) = default;
    ~Ints() override { detached ? void() : clear(); }

    using CollectionBase::rawAssign;
    using CollectionBase::rawBack;
    using CollectionBase::rawChunks;
    using CollectionBase::rawFront;
    using CollectionBase::rawIndex;
    using CollectionBase::rawInit;
    using CollectionBase::rawResize;

    void push(int value) {
        *static_cast<int*>(rawPush()) = value;
        rawPushed(size() + 1);
    }
    int* at(std::size_t i) const { return static_cast<int*>(rawIndex(i)); }

    int first[4] = {};
    std::vector<int> destroyed;
    bool detached = false;

private:
    void rawConstruct(void* slot, void const* source) override {
        *static_cast<int*>(slot) = source != nullptr ? *static_cast<int const*>(source) : -1;
    }
    void rawDestroy(void* slot) override { destroyed.push_back(*static_cast<int*>(slot)); }
};

/// Throws when made from the value that is told to, and counts its lives.
struct Fragile {
    explicit Fragile(int v = 0) : value{v} { begin(); }
    Fragile(Fragile const& other) : value{other.value} { begin(); }
    Fragile& operator=(Fragile const&) = default;
    ~Fragile() { --lives; }

    void begin() const {
        if (fuse-- == 0) throw std::runtime_error{"no more"};
        ++lives;
    }
    int value;
    static inline int lives = 0;
    static inline int fuse = -1;
};

}

TEST(CollectionBase, KeepsElementsInChunksThatNeverMove) {
    Ints ints;
    EXPECT_TRUE(ints.empty());
    EXPECT_EQ(ints.max_size(), 18446744073709551615u);
    unsigned char** const inlineTable = ints.rawChunks();

    std::vector<int*> places;
    for (int i = 0; i < 100; ++i) {
        ints.push(i);
        places.push_back(ints.at(ints.size() - 1));
        EXPECT_EQ(ints.rawChunks() == inlineTable, i < 4) << i;
    }
    EXPECT_EQ(ints.size(), 100u);
    EXPECT_EQ(ints.rawFront(), ints.first);
    EXPECT_EQ(ints.rawChunks()[0], reinterpret_cast<unsigned char*>(ints.first));
    EXPECT_EQ(ints.rawBack(), places.back());
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(ints.at(i), places[i]);
        EXPECT_EQ(*places[i], i);
        EXPECT_EQ(reinterpret_cast<unsigned char*>(places[i]), ints.rawChunks()[i / 4] + i % 4 * sizeof(int));
    }
}

TEST(CollectionBase, ResizesFromTheBack) {
    Ints ints;
    int const source = 7;
    ints.rawResize(5, &source);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(std::exchange(*ints.at(i), 10 + i), 7);
    ints.rawResize(2, nullptr);
    EXPECT_EQ(ints.destroyed, (std::vector{14, 13, 12}));
    ints.rawResize(4, nullptr);
    EXPECT_EQ(*ints.at(3), -1);
    ints.pop_back();
    EXPECT_EQ(ints.size(), 3u);
    ints.clear();
    EXPECT_EQ(ints.destroyed, (std::vector{14, 13, 12, -1, -1, 11, 10}));
}

TEST(CollectionBase, CopiesItsFieldsAndAssignsItsElements) {
    Ints ints, other;
    for (int i = 0; i < 3; ++i) ints.push(i);
    Ints fields{ints};
    fields.detached = true;
    EXPECT_TRUE(fields.size() == 3 && fields.rawChunks() == ints.rawChunks() && fields.rawFront() == ints.first);

    for (int i = 3; i < 9; ++i) ints.push(i);
    for (int i = 0; i < 6; ++i) other.push(100 + i);
    CollectionBase& base = other;
    base = base;
    EXPECT_EQ(*other.at(5), 105);
    base = ints;
    ASSERT_EQ(other.size(), 9u);
    EXPECT_EQ(other.destroyed, (std::vector{105, 104, 103, 102, 101, 100}));
    for (int i = 0; i < 9; ++i) EXPECT_EQ(*other.at(i), i);

    // Refusals leave everything as it was.
    Collection<int, 8> wider;
    Collection<unsigned, 4> others;  // of the same sizes
    for (unsigned i = 0; i < 5; ++i) others.push_back(i), wider.push_back(1);
    CollectionBase& same = others;
    EXPECT_THROW(base = wider, std::logic_error);
    EXPECT_THROW(base = others, std::logic_error);
    EXPECT_THROW(same = ints, std::logic_error);
    EXPECT_THROW(other.rawAssign(wider), std::logic_error);
    EXPECT_THROW(other.rawInit(ints), std::logic_error) << "not empty";
    ASSERT_EQ(other.size(), 9u);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(*other.at(i), i);
    EXPECT_TRUE(std::ranges::equal(others, std::vector{0u, 1u, 2u, 3u, 4u}));
}

TEST(Collection, IsARandomAccessSequence) {
    static_assert(std::random_access_iterator<Collection<int>::iterator>);
    static_assert(std::random_access_iterator<Collection<int>::const_iterator>);
    static_assert(std::convertible_to<Collection<int>::iterator, Collection<int>::const_iterator>);
    static_assert(!std::is_copy_constructible_v<Collection<std::unique_ptr<int>>>);

    Collection<int, 4> numbers;
    auto const first = numbers.begin();
    for (int i = 0; i < 50; ++i) numbers.push_back(i * 37 % 50);
    EXPECT_EQ(numbers.end() - first, 50);
    EXPECT_EQ(first[49], 49 * 37 % 50);
    std::ranges::sort(numbers);
    EXPECT_TRUE(std::ranges::equal(std::as_const(numbers), std::views::iota(0, 50)));
    EXPECT_EQ(*(7 + numbers.cbegin()), 7);
    EXPECT_TRUE(numbers.front() == 0 && numbers.back() == 49);
    numbers.resize(3);
    numbers.resize(6, numbers[2]);
    numbers.push_back(numbers.front());
    EXPECT_TRUE(std::ranges::equal(numbers, std::vector{0, 1, 2, 2, 2, 2, 0}));
}

TEST(Collection, CopiesAndMoves) {
    for (int size : {0, 3, 4, 5, 40}) {
        Collection<std::string, 4> texts;
        std::vector<std::string> expected;
        for (int i = 0; i < size; ++i) {
            expected.push_back("a text that is longer than the short ones " + std::to_string(i));
            texts.push_back(expected.back());
        }
        Collection<std::string, 4> copy{texts};
        EXPECT_TRUE(std::ranges::equal(copy, expected)) << size;
        std::string const* const late = size > 4 ? &texts[4] : nullptr;
        Collection<std::string, 4> moved{std::move(texts)};
        EXPECT_TRUE(texts.empty() && std::ranges::equal(moved, expected)) << size;
        EXPECT_TRUE(size <= 4 || &moved[4] == late);
        texts.emplace_back(3, 'x');
        copy = std::move(texts);
        EXPECT_TRUE(copy.size() == 1 && copy[0] == "xxx");
        copy = moved;
        moved = std::move(copy);
        EXPECT_TRUE(copy.empty() && std::ranges::equal(moved, expected)) << size;
    }
    Collection<std::unique_ptr<int>, 2> owners;
    for (int i = 0; i < 5; ++i) owners.push_back(std::make_unique<int>(i));
    Collection<std::unique_ptr<int>, 2> const moved = std::move(owners);
    EXPECT_TRUE(*moved[4] == 4 && *moved[0] == 0);
}

TEST(Collection, ConstructorThatThrowsLeavesTheCountExact) {
    using Elements = Collection<Fragile, 2>;
    for (std::size_t fuse = 0; fuse < 7; ++fuse) {
        Elements elements, source;
        for (int i = 0; i < 7; ++i) source.emplace_back(i);
        auto const expectFailure = [&](auto use) {
            elements.clear();
            Fragile::fuse = static_cast<int>(fuse);
            EXPECT_THROW(use(), std::runtime_error);
            Fragile::fuse = -1;
        };
        expectFailure([&] { Elements{source}; });
        expectFailure([&] { elements.resize(7); });
        EXPECT_EQ(elements.size(), fuse);
        expectFailure([&] { elements = source; });
        EXPECT_EQ(elements.size(), fuse);
        expectFailure([&] {
            for (;;) elements.emplace_back(1);
        });
        EXPECT_EQ(elements.size(), fuse);
        elements.emplace_back(5);
        EXPECT_EQ(elements.back().value, 5);
        EXPECT_EQ(Fragile::lives, 7 + static_cast<int>(fuse) + 1);
    }
    EXPECT_EQ(Fragile::lives, 0);
}
