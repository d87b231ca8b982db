#include "orn/events/EVSubscriptionListImp.h"

#include <gtest/gtest.h>

TEST(EventList, CopyCallsTheSameSubscriptions) {
    int calls = 0;
    ORN::Handle<EVSubscriptionListImp<void>> const list{new EVSubscriptionListImp<void>};
    EVCallableSubscription const subscription{static_cast<EVSubscriptionList<void>&>(*list), [&calls] { ++calls; }};
    {
        ORN::Handle<EVSubscriptionListImp<void>> const copy{new EVSubscriptionListImp<void>{*list}};
        EXPECT_TRUE(copy.isLastHandle());
        copy->notify();
        EXPECT_EQ(calls, 1);
    }
    list->notify();
    EXPECT_EQ(calls, 2);
}
