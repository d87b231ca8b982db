#include "orn/foundation/Handle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <thread>

using ORN::Handlable;
using ORN::Handle;

namespace {

/// Counts how many of its kind live.
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
    explicit Resurrecting(int& destructions) : destructions_{destructions} {}
    ~Resurrecting() override {
        ++destructions_;
        Handle<Resurrecting> again{this};
        Handle<Resurrecting> const copy = again;
        EXPECT_FALSE(again.isLastHandle());
    }

private:
    int& destructions_;
};

struct Count : ORN::HandleBase {
    template <typename T>
    static LONG of(Handle<T> const& handle) {
        return refC(handle.get());
    }
};

}

// Four handles take, pass on and drop objects at random, among them their own; plain pointers tell what must be where.
TEST(Handle, AnObjectLivesAsLongAsItsHandlesWhichItCounts) {
    std::atomic<int> lives = 0;
    {
        std::mt19937 random{11};
        Handle<Shared> handles[4];
        Shared* plain[4] = {};
        for (int step = 0; step < 4000; ++step) {
            unsigned int const to = random() % 4, from = random() % 4, action = random() % 7;
            Handle<Shared>&target = handles[to], &source = handles[from];
            if (action == 0) target.reset(plain[to] = new Shared{lives});
            if (action == 1) target = source, plain[to] = plain[from];
            if (action == 2) target = std::move(source), plain[to] = std::exchange(plain[from], nullptr);
            if (action == 2 && to == from) plain[to] = target.get();
            if (action == 3) target.reset(plain[to] = plain[from]);
            if (action == 4) target.swap(source), std::swap(plain[to], plain[from]);
            if (action == 5) target = nullptr, plain[to] = nullptr;
            if (action == 6 && plain[from]) target = Handle<Shared>{plain[to] = new Shared{*source}};
            std::set<Shared*> objects{std::begin(plain), std::end(plain)};
            objects.erase(nullptr);
            ASSERT_EQ(lives, static_cast<int>(objects.size())) << step << ": " << action;
            for (std::size_t i = 0; i < 4; ++i) {
                auto const count = std::ranges::count(plain, plain[i]);
                ASSERT_TRUE(handles[i].get() == plain[i] && handles[i].null() == !plain[i]) << step << ": " << action;
                ASSERT_EQ(handles[i] == handles[to], plain[i] == plain[to]);
                ASSERT_EQ(handles[i].isLastHandle(), plain[i] != nullptr && count == 1);
                ASSERT_TRUE(plain[i] == nullptr || Count::of(handles[i]) == count) << step << ": " << action;
            }
        }
    }
    EXPECT_EQ(lives, 0);
}

TEST(Handle, ConvertsToBasesAndBackWithoutLosingCount) {
    static_assert(std::is_nothrow_move_constructible_v<Handle<Shared>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, Handle<Special>>);
    static_assert(!std::is_convertible_v<Handle<Shared>, bool>);
    std::atomic<int> lives = 0;
    {
        Handle<Special> special = ORN::makeHandle<Special>(lives);
        Handle<Shared> base = special;
        EXPECT_TRUE(base && base != nullptr && base.get() == special.get() && &*base == base.operator->());
        EXPECT_EQ(ORN::handleCast<Special>(base), special);
        EXPECT_TRUE(ORN::handleCast<Resurrecting>(base).null() && ORN::handleCast<Special>(Handle<Shared>{}).null());
        Handle<Handlable> const lowest = std::move(special);
        EXPECT_TRUE(special == nullptr && Count::of(base) == 2);
        Handle<Shared> const moved{std::move(base)}, copy{moved};
        EXPECT_TRUE(base.null() && Count::of(moved) == 3);
        *copy = Shared{lives};
        EXPECT_EQ(Count::of(copy), 3) << "assigned objects keep their references";
    }
    EXPECT_EQ(lives, 0);
}

TEST(Handle, DestructorThatWrapsItsObjectDestroysItOnce) {
    int destructions = 0;
    Handle<Resurrecting>{new Resurrecting{destructions}}.reset(nullptr);
    EXPECT_EQ(destructions, 1);
}

TEST(Handle, ThreadsCopyAndDropOneObject) {
    std::atomic<int> lives = 0;
    Handle<Shared> shared{new Shared{lives}};
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
    shared = nullptr;
    EXPECT_EQ(lives, 0);
}
