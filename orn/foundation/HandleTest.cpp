#include "orn/foundation/Handle.h"

#include <gtest/gtest.h>

#include <thread>

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

TEST(Handle, CountsItsCopies) {
    static_assert(std::is_nothrow_move_constructible_v<Handle<Shared>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, Handle<Special>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, bool>);
    std::atomic<int> lives = 0;
    {
        Handle<Shared> const nothing, first{new Shared{lives}};
        EXPECT_TRUE(nothing.null() && nothing == Handle<Shared>{} && !nothing.isLastHandle());
        EXPECT_TRUE(first && first != nullptr && first != nothing && first.isLastHandle());
        {
            Handle<Shared> const second = first;
            EXPECT_EQ(second, first);
            EXPECT_FALSE(first.isLastHandle() || second.isLastHandle());
            EXPECT_EQ(&*second, second.operator->());
        }
        EXPECT_TRUE(first.isLastHandle());
        Handle<Shared> const byPointer{first.get()};
        EXPECT_EQ(Count::of(first), 2);

        // Copies of the object start without references.
        Handle<Shared> const copy{new Shared{*first}};
        *copy = *first;
        EXPECT_EQ(Count::of(copy), 1);
        EXPECT_EQ(Count::of(first), 2);
    }
    EXPECT_EQ(lives, 0);
}

TEST(Handle, AssignmentTakesTheNewBeforeItDropsTheOld) {
    std::atomic<int> lives = 0;
    Handle<Shared> handle{new Shared{lives}}, other{new Shared{lives}}, third = other;
    Handle<Shared>& itself = handle;
    handle = itself;
    handle = std::move(itself);
    handle.reset(handle.get());
    EXPECT_EQ(Count::of(handle), 1);

    handle = other;
    EXPECT_EQ(lives, 1);
    EXPECT_EQ(Count::of(other), 3);
    handle = std::move(third);
    EXPECT_TRUE(third.null());
    EXPECT_EQ(Count::of(other), 2);
    handle.reset(nullptr);
    EXPECT_TRUE(handle == nullptr && other.isLastHandle());
    other = nullptr;
    EXPECT_EQ(lives, 0);
}

TEST(Handle, MovesSwapsAndConvertsWithoutLosingCount) {
    std::atomic<int> lives = 0;
    Handle<Special> special = ORN::makeHandle<Special>(lives);
    Handle<Shared> base = special;
    EXPECT_EQ(ORN::handleCast<Special>(base), special);
    EXPECT_TRUE(ORN::handleCast<Resurrecting>(base).null() && ORN::handleCast<Special>(Handle<Shared>{}).null());
    EXPECT_TRUE(base.get() == special.get() && Count::of(base) == 2);
    Handle<Handlable> lowest = std::move(special);
    EXPECT_TRUE(special.null() && Count::of(base) == 2);
    Handle<Shared> moved{std::move(base)};
    EXPECT_TRUE(base.null() && Count::of(moved) == 2);
    moved.swap(base);
    EXPECT_TRUE(moved.null() && Count::of(base) == 2);
    base.reset(nullptr);
    EXPECT_EQ(lives, 1);
    lowest.reset(nullptr);
    EXPECT_EQ(lives, 0);
}

TEST(Handle, DestructorThatWrapsItsObjectDestroysItOnce) {
    int destructions = 0;
    Handle<Resurrecting>{new Resurrecting{destructions}}.reset(nullptr);
    EXPECT_EQ(destructions, 1);
}

TEST(Handle, ThreadsCopyAndDropOneObject) {
    std::atomic<int> lives = 0;
    {
        Handle<Shared> const shared{new Shared{lives}};
        {
            std::vector<std::jthread> workers;
            for (int worker = 0; worker < 4; ++worker)
                workers.emplace_back([own = shared] {
                    Handle<Shared> kept;
                    for (int round = 0; round < 20000; ++round) {
                        Handle<Shared> const copy = own;
                        kept = copy;
                        if (round % 3 == 0) kept.reset(nullptr);
                    }
                });
        }
        EXPECT_EQ(Count::of(shared), 1);
    }
    EXPECT_EQ(lives, 0);
}
