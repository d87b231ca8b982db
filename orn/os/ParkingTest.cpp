#include "orn/os/Parking.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using namespace ORN::os;

class ParkingContract : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(parking.create()); }
    void TearDown() override {
        EXPECT_TRUE(parking.idle());
        parking.close();
    }

    Parking parking;
};

TEST_F(ParkingContract, AWakeUpAfterTheTicketEndsTheSleepAndOneBeforeItDoesNot) {
    EXPECT_TRUE(parking.wake());
    auto ticket = parking.takeTicket();
    EXPECT_EQ(parking.sleep(ticket, 1), waitTimeout);
    EXPECT_TRUE(parking.wake());
    EXPECT_EQ(parking.sleep(ticket, infinite), waitObject);
    EXPECT_EQ(parking.sleep(ticket, 1), waitTimeout);
    parking.giveBack(ticket);
}

TEST_F(ParkingContract, TheTimeLimitIsInMillisecondsOfTheSteadyClock) {
    auto ticket = parking.takeTicket();
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(parking.sleep(ticket, 1990), waitTimeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{1970});  // a clock tick early at most
    EXPECT_EQ(parking.sleep(ticket, 0), waitTimeout);
    parking.giveBack(ticket);
}

TEST_F(ParkingContract, OneWakeUpEndsEverySleep) {
    std::atomic<int> ready{0}, woken{0};
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                auto ticket = parking.takeTicket();
                ++ready;
                woken += parking.sleep(ticket, infinite) == waitObject;
                parking.giveBack(ticket);
            });
        while (ready != 4) std::this_thread::yield();
        EXPECT_TRUE(parking.wake());
    }
    EXPECT_EQ(woken, 4);
}

}
