#include "orn/events/EVSubscriptionListImp.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

auto counting(EVSubscriptionList<void>& list, int& calls) {
    auto const count = [&calls] { ++calls; };
    return std::make_unique<EVCallableSubscription<void, decltype(count)>>(list, count);
}

}

TEST(EventList, CopyCallsTheSameSubscriptions) {
    int calls = 0;
    ORN::Handle<EVSubscriptionListImp<void>> const list{new EVSubscriptionListImp<void>};
    auto const subscription = counting(*list, calls);
    {
        ORN::Handle<EVSubscriptionListImp<void>> const copy{new EVSubscriptionListImp<void>{*list}};
        EXPECT_TRUE(copy.isLastHandle());
        copy->notify();
        EXPECT_EQ(calls, 1);
    }
    list->notify();
    EXPECT_EQ(calls, 2);
}

TEST(EventList, EveryFailingAllocationLeavesNothingAttached) {
    int calls = 0;
    int const failures = faults::failEveryAllocation([&] {
        calls = 0;
        auto const list = EVSubscriptionList<void>::create();
        std::deque<decltype(counting(*list, calls))> subscriptions;
        try {
            for (int i = 0; i < 9; ++i) subscriptions.push_back(counting(*list, calls));
        } catch (std::bad_alloc const&) {
            list->notify();
            EXPECT_EQ(calls, static_cast<int>(subscriptions.size()));
            subscriptions.clear();
            EXPECT_TRUE(list.isLastHandle());
            throw;
        }
        list->notify();
    });
    EXPECT_EQ(calls, 9);
    EXPECT_GE(failures, 10);
}
