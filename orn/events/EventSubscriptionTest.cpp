#include "orn/events/EVSubscriptionListImp.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

namespace {

using IntList = ORN::Handle<EVSubscriptionList<int>>;
using IntListImp = EVSubscriptionListImp<int>;

/// Room for a subscription, and what it does when it is called: it writes its name into a log, and throws the first times,
/// or always an int.
struct Place {
    ~Place() { remove(); }

    void act() {
        *log += name;
        if (throwsInt) throw 7;
        if (++calls > throwing) return;
        if (suppressesItself) subscription->suppress();
        throw std::runtime_error{name + std::to_string(calls)};
    }
    void remove() {
        if (subscription != nullptr) std::destroy_at(std::exchange(subscription, nullptr));
    }

    std::string* log = nullptr;
    char name = '?';
    unsigned int kind = 0;
    int throwing = 0;
    bool throwsInt = false, suppressesItself = false;
    int calls = 0;
    EVSubscriptionBase* subscription = nullptr;
    alignas(64) std::byte room[64];
};

/// A subscription without a step of its own.
class Plain : public EVSubscription<int> {
public:
    Plain(EVSubscriptionList<int>& list, Place& place) : EVSubscription{list}, place_{place} {}
    ~Plain() override { destroy(); }

    void notify(int) override { place_.act(); }
    using EVSubscription::destroy;

private:
    Place& place_;
};

/// What callable subscriptions of two classes call.
template <unsigned int Class>
struct Calling {
    void operator()(int) const {
        EXPECT_EQ(place->kind, Class) << "called by the step of another class";
        place->act();
    }
    Place* place;
};

void add(EVSubscriptionList<int>& list, Place& place, unsigned int kind) {
    place.kind = kind;
    if (kind == 0) place.subscription = ::new (place.room) Plain{list, place};
    if (kind == 1) place.subscription = ::new (place.room) EVCallableSubscription{list, Calling<1>{&place}};
    if (kind == 2) place.subscription = ::new (place.room) EVCallableSubscription{list, Calling<2>{&place}};
}

}

// In the order of addresses, whatever classes lie beside each other, and whatever came and went. The first that throws a
// std::exception is called once more, unless it has suppressed itself. A copy of the list calls the same.
TEST(EventSubscription, CallsMixturesOfClassesOneByOne) {
    for (unsigned int seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random{seed};
        auto const oneIn = [&](unsigned int count) { return random() % count == 0; };
        IntList const list = EVSubscriptionList<int>::create();
        EXPECT_TRUE(list.isLastHandle());
        std::string log, calls;
        Place row[6];
        for (Place& place : row) place.log = &log, place.name = static_cast<char>('a' + (&place - row));
        for (int change = 0; change < 12; ++change) {
            Place& place = row[random() % 6];
            place.remove();
            if (!oneIn(4)) add(*list, place, random() % 3);
        }

        std::wstring result = L"nothing";
        for (Place& place : row) {
            if (place.subscription == nullptr || result == L"int") continue;
            place.throwing = oneIn(4) ? 1 + static_cast<int>(random() % 2) : 0;
            place.throwsInt = oneIn(12);
            place.suppressesItself = oneIn(3);
            if (oneIn(4)) {
                place.subscription->suppress();
                continue;
            }
            calls += place.name;
            if (place.throwsInt) {
                result = L"int";
            } else if (place.throwing > 0 && result == L"nothing") {
                if (!place.suppressesItself) calls += place.name;
                result = L"runtime_error: " + std::wstring(1, static_cast<wchar_t>(place.name)) + L'1';
            }
        }

        IntList const copy{new IntListImp{static_cast<IntListImp&>(*list)}};
        EXPECT_TRUE(copy.isLastHandle());
        std::wstring came = L"int";
        try {
            came = thrown([&] { (oneIn(2) ? copy : list)->notify(1); });
        } catch (int) {}
        EXPECT_TRUE(log == calls && came == result) << seed << ": " << log << ", not " << calls;
    }
}

TEST(EventSubscription, IsCalledAgainWhenTheLastSuppressionHasEnded) {
    std::string log;
    Place place;
    place.log = &log;
    IntList const list = EVSubscriptionList<int>::create();
    Plain plain{*list, place};
    {
        EVSuppression const outer{plain};
        { EVSuppression const inner{plain}; }
        list->notify(1);
        EXPECT_EQ(log, "");
    }
    list->notify(1);
    EXPECT_EQ(log, "?");
}

TEST(EventSubscription, KeepsTheListWhileOneIsAttached) {
    std::string log;
    Place place;
    place.log = &log;
    IntList list = EVSubscriptionList<int>::create();
    EVSubscriptionList<int>& plain = *list;
    auto first = std::make_unique<Plain>(plain, place);
    auto second = std::make_unique<Plain>(plain, place);
    list.reset(nullptr);
    plain.notify(1);
    first.reset();
    plain.notify(1);
    EXPECT_EQ(log, "???");
    list.reset(&plain);
    EXPECT_FALSE(list.isLastHandle());
    second->destroy();
    EXPECT_TRUE(list.isLastHandle());
    second.reset();
    EXPECT_TRUE(list.isLastHandle());
}

TEST(EventSubscription, CarriesEveryKindOfValue) {
    auto const plain = EVSubscriptionList<void>::create();
    auto const quarks = EVSubscriptionList<Quark>::create();
    auto const texts = EVSubscriptionList<std::wstring>::create();
    std::wstring const given = L"text";
    std::wstring seen;
    EVCallableSubscription const a{*plain, [&] { seen += L"plain "; }};
    EVCallableSubscription const b{*quarks, [&](Quark value) { seen += value.value(); }};
    EVCallableSubscription const c{*texts,
                                   [&](std::wstring const& value) { seen += &value == &given ? L" same" : L"?"; }};
    plain->notify();
    quarks->notify(Quark::create(L"event"));
    texts->notify(given);
    EXPECT_EQ(seen, L"plain event same");
}

TEST(EventSubscription, CallbacksMayAnnounceAndSubscribe) {
    IntList const list = EVSubscriptionList<int>::create(), other = EVSubscriptionList<int>::create();
    std::string log;
    EVCallableSubscription const subscription{
        *list, [&](int value) {
            log += std::to_string(value);
            EVCallableSubscription const elsewhere{*other, [&](int) { log += 'o'; }};
            other->notify(0);
            if (value > 0) list->notify(value - 1);
        }};
    list->notify(2);
    EXPECT_EQ(log, "2o1oo0ooo");
}

/// Reaches the private lock word: an explicit instantiation may name it.
LONG volatile& detachingWord(EVSubscriptionBase& subscription);
template <auto member>
struct Expose {
    friend LONG volatile& detachingWord(EVSubscriptionBase& subscription) { return subscription.*member; }
};
template struct Expose<&EVSubscriptionBase::detaching_>;

// The thread that detaches it does so while the other two are inside destroy(), too. Any of the three may be that thread.
TEST(EventSubscription, ThreadsThatDetachItDetachItOnceAndAreWaitedForByTheDestructor) {
    struct Counts {
        std::atomic<int> erased = 0, deleted = 0;
    };
    struct SlowList : EVSubscriptionList<int> {
        explicit SlowList(Counts& counted) : counts{counted} {}
        ~SlowList() override { ++counts.deleted; }
        void notify(int) override {}
        void insert(EVSubscription<int>*) override {}
        void erase(EVSubscription<int>* subscription) override {
            ORN::Threading::LockWord const word{detachingWord(*subscription)};
            auto const inside = [&] { return word.read() & ~readWriteLockWriter; };
            for (int tries = 0; inside() != 3 && tries < 2000; ++tries)
                std::this_thread::sleep_for(std::chrono::milliseconds{2});
            EXPECT_EQ(inside(), 3) << "the destructor cannot know of the others";
            ++counts.erased;
        }
        Counts& counts;
    };
    for (int round = 0; round < 10 && !testing::Test::HasFailure(); ++round) {
        Counts counts;
        IntList list{new SlowList{counts}};
        Place never;
        auto subscription = std::make_unique<Plain>(*list, never);
        auto const detach = [&counts, detached = subscription.get()] {
            detached->destroy();
            EXPECT_EQ(counts.erased, 1);
        };
        {
            std::jthread const one{detach}, other{detach};
            list = nullptr;
            detach();
            subscription.reset();
        }
        EXPECT_TRUE(counts.erased == 1 && counts.deleted == 1);
    }
}

TEST(EventSubscription, ThreadsSubscribeAndDetachAgainstAnnouncements) {
    constexpr int announcers = 2, subscribers = 2, rounds = 3000;
    auto const list = EVSubscriptionList<std::wstring>::create();
    std::atomic<long> constant = 0, passing = 0;
    EVCallableSubscription stays{*list, [&](std::wstring const& value) { constant += value == L"event"; }};
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < announcers; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) list->notify(L"event");
            });
        for (int i = 0; i < subscribers; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) {
                    auto own = std::make_unique<std::wstring>(L"event");
                    EVCallableSubscription const comes{
                        *list,
                        [&passing, own = std::move(own)](std::wstring const& value) { passing += *own == value; }};
                    if (round % 2 == 0) list->notify(*std::make_unique<std::wstring>(L"event"));
                }
            });
    }
    EXPECT_EQ(constant, announcers * rounds + subscribers * rounds / 2);
    EXPECT_GE(passing, subscribers * rounds / 2);
    EXPECT_FALSE(list.isLastHandle());
}
