#include "orn/events/EVSubscriptionListImp.h"

#include <gtest/gtest.h>

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
