#include "orn/foundation/Handle.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

using ORN::Handlable;
using ORN::Handle;

namespace {

/// Counts how many of its kind live, and lets the test see the reference count through the base.
class Shared : public Handlable {
public:
    explicit Shared(std::atomic<int>& lives) : lives_{&lives} { ++*lives_; }
    Shared(Shared const& other) : Handlable{other}, lives_{other.lives_} { ++*lives_; }
    Shared& operator=(Shared const&) = default;
    ~Shared() override { --*lives_; }

private:
    std::atomic<int>* lives_;
};

class Special : public Shared {
public:
    using Shared::Shared;
};

/// Its destructor hands itself out once more.
class Resurrecting : public Handlable {
public:
    explicit Resurrecting(int& destructions) : destructions_{&destructions} {}
    ~Resurrecting() override {
        ++*destructions_;
        Handle<Resurrecting> again{this};
        Handle<Resurrecting> const copy = again;
        EXPECT_FALSE(again.isLastHandle());
    }

private:
    int* destructions_;
};

struct Count : ORN::HandleBase {
    template <typename T>
    static LONG of(Handle<T> const& handle) {
        return refC(handle.get());
    }
};

}

TEST(Handle, IsOnePointerWideAndCountsItsCopies) {
    static_assert(sizeof(Handle<Shared>) == sizeof(void*));
    static_assert(std::is_nothrow_move_constructible_v<Handle<Shared>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, Handle<Special>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, bool>);

    std::atomic<int> lives = 0;
    {
        Handle<Shared> const nothing;
        EXPECT_TRUE(nothing.null());
        EXPECT_EQ(nothing, Handle<Shared>{});
        EXPECT_FALSE(nothing.isLastHandle());

        Handle<Shared> first{new Shared{lives}};
        EXPECT_TRUE(first.isLastHandle());
        EXPECT_TRUE(first && first != nullptr && first != nothing);
        {
            Handle<Shared> const second = first;
            EXPECT_EQ(second, first);
            EXPECT_FALSE(first.isLastHandle());
            EXPECT_FALSE(second.isLastHandle());
            EXPECT_EQ(&*second, second.operator->());
        }
        EXPECT_TRUE(first.isLastHandle());

        Handle<Shared> const byPointer{first.get()};
        EXPECT_EQ(Count::of(first), 2);
    }
    EXPECT_EQ(lives, 0);
}

TEST(Handle, AssignmentTakesTheNewBeforeItDropsTheOld) {
    std::atomic<int> lives = 0;
    Handle<Shared> handle{new Shared{lives}};
    Handle<Shared>& itself = handle;
    handle = itself;
    EXPECT_EQ(Count::of(handle), 1);
    handle = std::move(itself);
    EXPECT_EQ(Count::of(handle), 1);
    handle.reset(handle.get());
    EXPECT_EQ(Count::of(handle), 1);

    Handle<Shared> other{new Shared{lives}};
    Handle<Shared> third = other;
    handle = other;
    EXPECT_EQ(lives, 1);
    EXPECT_EQ(Count::of(other), 3);
    handle = std::move(third);
    EXPECT_TRUE(third.null());
    EXPECT_EQ(Count::of(other), 2);
    handle.reset(nullptr);
    EXPECT_TRUE(handle == nullptr);
    EXPECT_TRUE(other.isLastHandle());
    other = nullptr;
    EXPECT_EQ(lives, 0);
}

TEST(Handle, MovesSwapsAndConvertsWithoutLosingCount) {
    std::atomic<int> lives = 0;
    Handle<Special> special{new Special{lives}};
    Handle<Shared> base = special;
    EXPECT_EQ(base.get(), special.get());
    EXPECT_EQ(Count::of(base), 2);
    Handle<Handlable> lowest = std::move(special);
    EXPECT_TRUE(special.null());
    EXPECT_EQ(Count::of(base), 2);

    Handle<Shared> moved{std::move(base)};
    EXPECT_TRUE(base.null());
    EXPECT_EQ(Count::of(moved), 2);
    moved.swap(base);
    EXPECT_TRUE(moved.null());
    EXPECT_EQ(Count::of(base), 2);

    base.reset(nullptr);
    EXPECT_EQ(lives, 1);
    lowest.reset(nullptr);
    EXPECT_EQ(lives, 0);
}

TEST(Handle, CopiesOfAnObjectStartWithoutReferences) {
    std::atomic<int> lives = 0;
    Handle<Shared> const first{new Shared{lives}};
    Handle<Shared> const second = first;
    Handle<Shared> const copy{new Shared{*first}};
    EXPECT_EQ(Count::of(copy), 1);
    *copy = *first;
    EXPECT_EQ(Count::of(copy), 1);
    EXPECT_EQ(Count::of(first), 2);

    auto const unshared = std::make_unique<Shared>(*first);
    EXPECT_EQ(lives, 3);
}

TEST(Handle, DestructorThatWrapsItsObjectDestroysItOnce) {
    int destructions = 0;
    Handle<Resurrecting> handle{new Resurrecting{destructions}};
    handle.reset(nullptr);
    EXPECT_EQ(destructions, 1);
}

TEST(Handle, ThreadsCopyAndDropOneObject) {
    constexpr int threads = 4;
    constexpr int rounds = 20000;
    std::atomic<int> lives = 0;
    {
        Handle<Shared> const shared{new Shared{lives}};
        std::vector<std::thread> workers;
        for (int worker = 0; worker < threads; ++worker)
            workers.emplace_back([own = shared] {
                Handle<Shared> kept;
                for (int round = 0; round < rounds; ++round) {
                    Handle<Shared> const copy = own;
                    kept = copy;
                    if (round % 3 == 0) kept.reset(nullptr);
                }
            });
        for (std::thread& worker : workers) worker.join();
        workers.clear();
        EXPECT_EQ(Count::of(shared), 1);
    }
    EXPECT_EQ(lives, 0);
}
