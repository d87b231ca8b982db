#include "orn/os/Waitable.h"

#include <gtest/gtest.h>

#include <chrono>

namespace os = ORN::os;

namespace {

unsigned int returnArgument(void* argument) { return *static_cast<unsigned int*>(argument); }
unsigned int waitForArgument(void* argument) { return os::waitFor(argument, os::waitForever); }

TEST(Waitable, AWaitTakesAnEventsSignalBack) {
    HANDLE const event = os::createEvent();
    EXPECT_EQ(os::waitFor(event, 0), os::waitTimedOut);
    EXPECT_TRUE(os::signalEvent(event));
    EXPECT_TRUE(os::signalEvent(event));
    EXPECT_EQ(os::waitFor(event, os::waitForever), os::waitObject);
    EXPECT_EQ(os::waitFor(event, 0), os::waitTimedOut);

    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(os::waitFor(event, 30), os::waitTimedOut);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{25});
    os::closeHandle(event);
    EXPECT_FALSE(os::signalEvent(nullptr));
    EXPECT_EQ(os::waitFor(nullptr, 0), os::waitFailed);
}

TEST(Waitable, AThreadStaysSignalledAndKeepsItsExitCode) {
    unsigned int seven = 7;
    DWORD code = 0;
    HANDLE const ended = os::startThread(returnArgument, &seven, 0x40000);
    for (int time : {1, 2}) EXPECT_EQ(os::waitFor(ended, os::waitForever), os::waitObject) << time;
    EXPECT_TRUE(os::threadExitCode(ended, code) && code == 7);
    os::closeHandle(ended);

    HANDLE const event = os::createEvent(), thread = os::startThread(waitForArgument, event, 0x40000);
    EXPECT_TRUE(os::threadExitCode(thread, code) && code == os::threadStillActive);
    EXPECT_EQ(os::waitFor(thread, 0), os::waitTimedOut);
    os::signalEvent(event);
    EXPECT_EQ(os::waitFor(thread, os::waitForever), os::waitObject);
    EXPECT_FALSE(os::threadExitCode(event, code));
    os::closeHandle(thread);
    os::closeHandle(event);
}

}
