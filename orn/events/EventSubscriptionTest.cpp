#include "orn/events/EventSubscription.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

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

/// The text of the std::runtime_error that the list lets out; "" when there is none.
std::string announced(IntList const& list, int value = 1) {
    try {
        list->notify(value);
    } catch (std::runtime_error const& error) {
        return error.what();
    }
    return "";
}

}

TEST(EventSubscription, CallsInTheOrderOfAddresses) {
    IntList const list = EVSubscriptionList<int>::create();
    EXPECT_TRUE(list.isLastHandle());
    list->notify(1);
    Row row{*list, "cadb"};
    list->notify(1);
    EXPECT_EQ(row.log, "abcd");
    row['b'].destroy();
    list->notify(1);
    EXPECT_EQ(row.log, "abcdacd");
    row['b'].destroy();
    list->notify(1);
    EXPECT_EQ(row.log, "abcdacdacd");
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
    struct Case {
        int a, b, c;  // how many calls of each throw
        std::string log, thrown;
    } const cases[] = {
        {0, 1, 0, "abbc", "b1"}, {0, 2, 0, "abbc", "b1"}, {0, 1, 1, "abbc", "b1"}, {1, 1, 1, "aabc", "a1"},
        {0, 0, 1, "abcc", "c1"}, {2, 2, 2, "aabc", "a1"}, {0, 0, 0, "abc", ""},
    };
    for (Case const& expected : cases) {
        IntList const list = EVSubscriptionList<int>::create();
        Row row{*list, "abc"};
        row['a'].throwing = expected.a;
        row['b'].throwing = expected.b;
        row['c'].throwing = expected.c;
        EXPECT_EQ(announced(list), expected.thrown);
        EXPECT_EQ(row.log, expected.log);
    }
}

TEST(EventSubscription, DoesNotRepeatWhoSuppressedItselfAndThrew) {
    IntList const list = EVSubscriptionList<int>::create();
    int calls = 0;
    EVSubscriptionBase* self = nullptr;
    EVCallableSubscription subscription{*list, [&](int) {
                                            ++calls;
                                            self->suppress();
                                            throw std::runtime_error{"once"};
                                        }};
    self = &subscription;
    EXPECT_EQ(announced(list), "once");
    EXPECT_EQ(calls, 1);
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
    auto const numbers = EVSubscriptionList<int>::create();
    auto const quarks = EVSubscriptionList<Quark>::create();
    auto const texts = EVSubscriptionList<std::wstring>::create();
    int times = 0, number = 0;
    Quark quark;
    std::wstring const* text = nullptr;
    EVCallableSubscription const a{*plain, [&] { ++times; }};
    EVCallableSubscription const b{*numbers, [&](int value) { number = value; }};
    EVCallableSubscription const c{*quarks, [&](Quark value) { quark = value; }};
    EVCallableSubscription const d{*texts, [&](std::wstring const& value) { text = &value; }};

    std::wstring const given = L"text";
    plain->notify();
    numbers->notify(-5);
    quarks->notify(Quark::create(L"event"));
    texts->notify(given);
    EXPECT_EQ(times, 1);
    EXPECT_EQ(number, -5);
    EXPECT_EQ(quark, Quark::create(L"event"));
    EXPECT_EQ(text, &given);
}

TEST(EventSubscription, CallbacksMayAnnounceAgain) {
    IntList const list = EVSubscriptionList<int>::create();
    IntList const other = EVSubscriptionList<int>::create();
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

TEST(EventSubscription, ThreadsSubscribeAndDetachAgainstAnnouncements) {
    constexpr int announcers = 2, subscribers = 2, rounds = 3000;
    auto const list = EVSubscriptionList<std::wstring>::create();
    std::atomic<long> constant = 0, passing = 0;
    EVCallableSubscription stays{*list, [&](std::wstring const& value) { constant += value == L"event"; }};
    std::vector<std::thread> threads;
    for (int i = 0; i < announcers; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) list->notify(L"event");
        });
    for (int i = 0; i < subscribers; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                auto own = std::make_unique<std::wstring>(L"event");
                EVCallableSubscription const comes{
                    *list, [&passing, own = std::move(own)](std::wstring const& value) { passing += *own == value; }};
                if (round % 2 == 0) list->notify(*std::make_unique<std::wstring>(L"event"));
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(constant, announcers * rounds + subscribers * rounds / 2);
    EXPECT_GE(passing, subscribers * rounds / 2);
    EXPECT_FALSE(list.isLastHandle());
}
