#include "orn/events/EventSubscription.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

namespace {

/// What a subscription does when it is called: it writes its name into a log, and throws the first times, or always an int.
struct Behaviour {
    void act() {
        *log += name;
        if (throwsInt) throw 7;
        if (++calls <= throwing) throw std::runtime_error{std::string{name} + std::to_string(calls)};
    }

    std::string* log = nullptr;
    char name = '?';
    unsigned int kind = 0;
    int throwing = 0;
    bool throwsInt = false;
    int calls = 0;
};

/// A subscription without a step of its own.
class Plain : public EVSubscription<int> {
public:
    Plain(EVSubscriptionList<int>& list, Behaviour& does) : EVSubscription{list}, behaviour_{does} {}
    ~Plain() override { destroy(); }

    void notify(int) override { behaviour_.act(); }
    using EVSubscription::destroy;

private:
    Behaviour& behaviour_;
};

/// What callable subscriptions of two classes call.
template <unsigned int Class>
struct Calling {
    void operator()(int) const {
        EXPECT_EQ(behaviour->kind, Class) << "called by the step of another class";
        behaviour->act();
    }
    Behaviour* behaviour;
};

/// Subscriptions named a, b, c, … at ascending addresses.
class Row {
public:
    explicit Row(EVSubscriptionList<int>& list) : list_{list} {}
    ~Row() {
        for (char name = 'a'; name < 'a' + size; ++name) remove(name);
    }
    Row(Row const&) = delete;

    Behaviour& operator[](char name) { return behaviours_[name - 'a']; }
    EVSubscriptionBase*& subscription(char name) { return subscriptions_[name - 'a']; }

    void add(char name, unsigned int kind = 0) {
        void* const place = room_[name - 'a'];
        Behaviour& behaviour = (*this)[name] = {&log, name, kind};
        if (kind == 0) subscription(name) = ::new (place) Plain{list_, behaviour};
        if (kind == 1) subscription(name) = ::new (place) EVCallableSubscription{list_, Calling<1>{&behaviour}};
        if (kind == 2) subscription(name) = ::new (place) EVCallableSubscription{list_, Calling<2>{&behaviour}};
    }
    void remove(char name) {
        if (subscription(name) != nullptr) std::destroy_at(std::exchange(subscription(name), nullptr));
    }

    /// What one announcement leads to: the calls, and what came out of it.
    std::wstring announced() {
        log.clear();
        std::wstring result = L"int";
        try {
            result = thrown([&] { list_.notify(1); });
        } catch (int) {}
        return std::wstring{log.begin(), log.end()} + L' ' + result;
    }

    static constexpr int size = 6;
    std::string log;

private:
    EVSubscriptionList<int>& list_;
    alignas(64) std::byte room_[size][64];
    EVSubscriptionBase* subscriptions_[size] = {};
    Behaviour behaviours_[size];
};

using IntList = ORN::Handle<EVSubscriptionList<int>>;

}

TEST(EventSubscription, WhoSuppressesItselfAndThrowsIsNotCalledAgain) {
    IntList const list = EVSubscriptionList<int>::create();
    int calls = 0;
    EVSubscriptionBase* self = nullptr;
    EVCallableSubscription subscription{*list, [&](int) {
                                            ++calls;
                                            self->suppress();
                                            throw std::runtime_error{"once"};
                                        }};
    self = &subscription;
    EXPECT_EQ(thrown([&] { list->notify(1); }), L"runtime_error: once");
    EXPECT_EQ(calls, 1);
}

// In the order of addresses, whatever classes lie beside each other, and whatever came and went. The first that throws a
// std::exception is called once more.
TEST(EventSubscription, CallsMixturesOfClassesOneByOne) {
    for (unsigned int seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random{seed};
        IntList const list = EVSubscriptionList<int>::create();
        EXPECT_TRUE(list.isLastHandle());
        Row row{*list};
        for (int change = 0; change < 12; ++change) {
            char const name = static_cast<char>('a' + random() % Row::size);
            row.remove(name);
            if (random() % 4 != 0) row.add(name, random() % 3);
        }

        std::string calls;
        std::wstring result = L"nothing";
        for (char name = 'a'; name < 'a' + Row::size && result != L"int"; ++name) {
            if (row.subscription(name) == nullptr) continue;
            Behaviour& one = row[name];
            one.throwing = random() % 4 == 0 ? 1 + static_cast<int>(random() % 2) : 0;
            one.throwsInt = random() % 12 == 0;
            if (random() % 4 == 0) {
                row.subscription(name)->suppress();
                continue;
            }
            calls += name;
            if (one.throwsInt) {
                result = L"int";
            } else if (one.throwing > 0 && result == L"nothing") {
                calls += name;
                result = L"runtime_error: " + std::wstring(1, static_cast<wchar_t>(name)) + L'1';
            }
        }
        EXPECT_EQ(row.announced(), std::wstring(calls.begin(), calls.end()) + L' ' + result) << seed;
    }
}

TEST(EventSubscription, KeepsTheListWhileOneIsAttached) {
    static_assert(sizeof(EVSubscription<int>) == 24);
    std::string log;
    Behaviour behaviour{&log, 'x'};
    IntList list = EVSubscriptionList<int>::create();
    EVSubscriptionList<int>& plain = *list;
    auto first = std::make_unique<Plain>(plain, behaviour);
    auto second = std::make_unique<Plain>(plain, behaviour);
    list.reset(nullptr);
    plain.notify(1);
    first.reset();
    plain.notify(1);
    EXPECT_EQ(log, "xxx");
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
    Behaviour behaviour{&log, 'o'};
    EVCallableSubscription const subscription{*list, [&](int value) {
                                                  log += std::to_string(value);
                                                  Plain const elsewhere{*other, behaviour};
                                                  other->notify(0);
                                                  if (value > 0) list->notify(value - 1);
                                              }};
    list->notify(2);
    EXPECT_EQ(log, "2o1oo0ooo");
}

TEST(EventSubscription, ThreadsThatDetachItDetachItOnceAndWaitForThat) {
    struct Counts {
        std::atomic<int> erased = 0, lists = 0;
    };
    struct SlowList : EVSubscriptionList<int> {
        explicit SlowList(Counts& counted) : counts{counted} { ++counts.lists; }
        ~SlowList() override { --counts.lists; }
        void notify(int) override {}
        void insert(EVSubscription<int>*) override {}
        void erase(EVSubscription<int>*) override {
            std::this_thread::sleep_for(std::chrono::milliseconds{2});
            ++counts.erased;
        }
        Counts& counts;
    };
    for (int round = 0; round < 10; ++round) {
        Counts counts;
        IntList list{new SlowList{counts}};
        Behaviour never;
        auto subscription = std::make_unique<Plain>(*list, never);
        std::atomic<int> awaited = 3;  // std::latch of mingw-w64 sometimes never wakes
        auto const detach = [&] {
            for (--awaited; awaited != 0;) std::this_thread::yield();
            subscription->destroy();
            EXPECT_EQ(counts.erased, 1);
        };
        {
            std::jthread const one{detach}, other{detach};
            list = nullptr;
            detach();
        }
        subscription.reset();
        EXPECT_TRUE(counts.erased == 1 && counts.lists == 0);
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
