#include "orn/events/EventSubscription.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

/// Writes its name into a log, and then does what it was told to do.
class Named : public EVSubscription<int> {
public:
    Named(EVSubscriptionList<int>& list, std::string& log, char name) : EVSubscription{list}, log_{log}, name_{name} {}
    ~Named() override { destroy(); }

    void notify(int value) override {
        log_ += name_;
        ++calls;
        if (throwsInt) throw value;
        if (throwing-- > 0) throw std::runtime_error{std::string{name_} + std::to_string(calls)};
    }
    using EVSubscription::destroy;

    int calls = 0;
    int throwing = 0;  // so many calls throw a std::exception
    bool throwsInt = false;

private:
    std::string& log_;
    char name_;
};

/// Subscriptions named a, b, c, … at ascending addresses, made in the order of `order`.
class Row {
public:
    Row(EVSubscriptionList<int>& list, std::string const& order) : count_{order.size()} {
        memory_ = static_cast<Named*>(::operator new(count_ * sizeof(Named)));
        for (char name : order) ::new (memory_ + (name - 'a')) Named{list, log, name};
    }
    ~Row() {
        for (std::size_t i = 0; i < count_; ++i) memory_[i].~Named();
        ::operator delete(memory_);
    }
    Row(Row const&) = delete;

    Named& operator[](char name) { return memory_[name - 'a']; }

    std::string log;

private:
    std::size_t count_;
    Named* memory_;
};

using IntList = ORN::Handle<EVSubscriptionList<int>>;

}

TEST(EventSubscription, CallsInTheOrderOfAddresses) {
    IntList const list = EVSubscriptionList<int>::create();
    EXPECT_TRUE(list.isLastHandle());
    list->notify(1);
    Row row{*list, "cadb"};
    list->notify(1);
    EXPECT_EQ(row.log, "abcd");
    for (std::string const log : {"abcdacd", "abcdacdacd"}) {
        row['b'].destroy();
        list->notify(1);
        EXPECT_EQ(row.log, log);
    }
}

TEST(EventSubscription, PassesOverTheSuppressed) {
    IntList const list = EVSubscriptionList<int>::create();
    Row row{*list, "abc"};
    {
        EVSuppression const once{row['b']};
        row['b'].suppress();
        list->notify(1);
    }
    list->notify(1);
    row['b'].unsuppress();
    list->notify(1);
    EXPECT_EQ(row.log, "acacabc");
}

TEST(EventSubscription, RecoversFromStandardExceptions) {
    struct {
        int a, b, c;  // how many calls of each throw
        std::string log;
        std::wstring announced;
    } const cases[] = {
        {0, 1, 0, "abbc", L"runtime_error: b1"},
        {0, 2, 0, "abbc", L"runtime_error: b1"},
        {0, 1, 1, "abbc", L"runtime_error: b1"},
        {1, 1, 1, "aabc", L"runtime_error: a1"},
        {0, 0, 1, "abcc", L"runtime_error: c1"},
        {2, 2, 2, "aabc", L"runtime_error: a1"},
        {0, 0, 0, "abc", L"nothing"},
    };
    for (auto const& expected : cases) {
        IntList const list = EVSubscriptionList<int>::create();
        Row row{*list, "abc"};
        row['a'].throwing = expected.a;
        row['b'].throwing = expected.b;
        row['c'].throwing = expected.c;
        EXPECT_EQ(thrown([&] { list->notify(1); }), expected.announced);
        EXPECT_EQ(row.log, expected.log);
    }
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
    EXPECT_EQ(calls, 1) << "who suppressed itself and threw is not called again";
}

TEST(EventSubscription, LetsOtherExceptionsOutAtOnceAndUnlocks) {
    for (int throwing : {0, 1}) {
        IntList const list = EVSubscriptionList<int>::create();
        Row row{*list, "abc"};
        row['a'].throwing = throwing;
        row['b'].throwsInt = true;
        EXPECT_THROW(list->notify(7), int);
        EXPECT_EQ(row.log, throwing ? "aab" : "ab");
        row['b'].destroy();  // waits for ever if the list were still locked
        list->notify(1);
        EXPECT_EQ(row.log, throwing ? "aabac" : "abac");
    }
}

TEST(EventSubscription, KeepsTheListWhileOneIsAttached) {
    static_assert(sizeof(EVSubscription<int>) == 24);
    std::string log;
    IntList list = EVSubscriptionList<int>::create();
    EVSubscriptionList<int>& plain = *list;
    auto first = std::make_unique<Named>(plain, log, 'x');
    auto second = std::make_unique<Named>(plain, log, 'x');
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
    EVCallableSubscription const subscription{*list, [&](int value) {
                                                  log += std::to_string(value);
                                                  Named elsewhere{*other, log, 'o'};
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
        std::string log;
        auto subscription = std::make_unique<Named>(*list, log, 'x');
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
