#include "orn/foundation/Collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <ranges>

using ORN::Collection;
using ORN::CollectionBase;

namespace {

/// Four ints a chunk over the bare base, with a record of what is destroyed.
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

    int* push(int value) {
        int* const place = static_cast<int*>(rawPush());
        rawPushed(size() + 1);
        *place = value;
        return place;
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

/// Throws when the fuse has burnt down, and counts its lives.
struct Fragile {
    explicit Fragile(int v = 0) : value{v} { begin(); }
    Fragile(Fragile const& other) : value{other.value} { begin(); }
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

TEST(CollectionBase, KeepsElementsInChunksThatNeverMoveAndResizesFromTheBack) {
    Ints ints;
    EXPECT_EQ(ints.max_size(), 18446744073709551615u);
    unsigned char** const inlineTable = ints.rawChunks();
    std::vector<int*> places;
    for (int i = 0; i < 100; ++i) {
        places.push_back(ints.push(i));
        EXPECT_EQ(ints.rawChunks() == inlineTable, i < 4) << i;
    }
    EXPECT_TRUE(ints.size() == 100 && ints.rawFront() == ints.first && ints.rawBack() == places.back());
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(ints.at(i) == places[i] && *places[i] == i) << i;
        EXPECT_EQ(reinterpret_cast<unsigned char*>(places[i]), ints.rawChunks()[i / 4] + i % 4 * sizeof(int));
    }
    ints.rawResize(5, nullptr);
    int const source = 7;
    ints.rawResize(6, &source);
    ints.rawResize(9, nullptr);
    ints.pop_back();
    ints.destroyed.clear();
    ints.clear();
    EXPECT_EQ(ints.destroyed, (std::vector{-1, -1, 7, 4, 3, 2, 1, 0}));
    EXPECT_TRUE(ints.empty());
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
    base = static_cast<CollectionBase&>(other);
    EXPECT_EQ(*other.at(5), 105);
    base = ints;
    EXPECT_EQ(other.destroyed, (std::vector{105, 104, 103, 102, 101, 100}));

    // Refusals leave everything as it was.
    Collection<int, 8> wider;
    Collection<unsigned, 4> others;  // of the same sizes
    for (unsigned i = 0; i < 5; ++i) others.push_back(i), wider.push_back(1);
    EXPECT_THROW(base = wider, std::logic_error);
    EXPECT_THROW(base = others, std::logic_error);
    EXPECT_THROW(static_cast<CollectionBase&>(others) = ints, std::logic_error);
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
    std::vector<int> counted(50);
    std::iota(counted.begin(), counted.end(), 0);
    EXPECT_TRUE(std::ranges::equal(std::as_const(numbers), counted));
    EXPECT_TRUE(*(7 + numbers.cbegin()) == 7 && std::as_const(numbers).front() == 0 &&
                std::as_const(numbers).back() == 49);
}

TEST(Collection, DoesWhatAVectorDoes) {
    std::mt19937 random{5};
    Collection<std::string, 4> texts, others;
    std::vector<std::string> expected, expectedOthers;
    for (int step = 0; step < 3000; ++step) {
        std::string const text(1 + random() % 40, static_cast<char>('a' + random() % 26));
        std::size_t const size = random() % 20;
        unsigned int const action = random() % 9;
        std::string const* const late = texts.size() > 4 ? &texts[4] : nullptr;
        auto const both = [&](auto act) { act(texts, others), act(expected, expectedOthers); };
        if (action < 3) both([&](auto& own, auto&) { own.push_back(text); });
        if (action == 3 && !expected.empty())
            both([](auto& own, auto&) { own.push_back(own.front()), own.pop_back(); });
        if (action == 4 && !expected.empty()) both([&](auto& own, auto&) { own.resize(size, own.back()); });
        if (action == 5) both([&](auto& own, auto&) { own.resize(size); });
        if (action == 6) both([](auto& own, auto& other) { other = own; });
        if (action == 7) both([](auto& own, auto& other) { own = std::move(other), other.clear(); });
        if (action == 8)
            both([](auto& own, auto& other) {
                auto copy{own}, moved{std::move(copy)};
                other = std::move(moved);
            });
        ASSERT_TRUE(std::ranges::equal(texts, expected) && std::ranges::equal(others, expectedOthers)) << action;
        ASSERT_TRUE(late == nullptr || texts.size() <= 4 || action == 7 || &texts[4] == late) << action;
    }
}

TEST(Collection, MovesItsFirstChunkAndTakesTheOthersOver) {
    Collection<std::unique_ptr<int>, 2> owners;
    for (int i = 0; i < 5; ++i) owners.push_back(std::make_unique<int>(i));
    std::unique_ptr<int>* const late = &owners[2];
    Collection<std::unique_ptr<int>, 2> moved = std::move(owners);
    auto& itself = moved;
    moved = std::move(itself);
    EXPECT_TRUE(owners.empty() && *moved[4] == 4 && *moved[0] == 0 && &moved[2] == late);
}

TEST(Collection, ConstructorThatThrowsLeavesTheCountExact) {
    using Elements = Collection<Fragile, 2>;
    for (std::size_t fuse = 0; fuse < 7; ++fuse) {
        Elements elements, source;
        for (int i = 0; i < 7; ++i) source.emplace_back(i);
        auto const expectFailure = [&](auto use, std::size_t left) {
            elements.clear();
            Fragile::fuse = static_cast<int>(fuse);
            EXPECT_THROW(use(), std::runtime_error);
            Fragile::fuse = -1;
            EXPECT_EQ(elements.size(), left);
        };
        expectFailure([&] { Elements{source}; }, 0);
        expectFailure([&] { elements.resize(7); }, fuse);
        expectFailure([&] { elements = source; }, fuse);
        expectFailure(
            [&] {
                for (;;) elements.emplace_back(1);
            },
            fuse);
        elements.emplace_back(5);
        EXPECT_EQ(elements.back().value, 5);
        EXPECT_EQ(Fragile::lives, 7 + static_cast<int>(fuse) + 1);
    }
    EXPECT_EQ(Fragile::lives, 0);
}
