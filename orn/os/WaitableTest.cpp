#include "orn/os/Waitable.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace os = ORN::os;

namespace {

unsigned int returnArgument(void* argument) { return *static_cast<unsigned int*>(argument); }
unsigned int exitWithArgument(void* argument) { os::exitThread(*static_cast<unsigned int*>(argument)); }
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

    std::thread signaller{[&] { os::signalEvent(event); }};
    EXPECT_EQ(os::waitDeliveringSentMessages(event), os::waitObject);
    signaller.join();
    os::closeHandle(event);
    EXPECT_FALSE(os::signalEvent(nullptr));
    EXPECT_EQ(os::waitFor(nullptr, 0), os::waitFailed);
}

TEST(Waitable, AThreadStaysSignalledAndKeepsItsExitCode) {
    unsigned int seven = 7;
    DWORD code = 0;
    for (auto* const main : {returnArgument, exitWithArgument}) {
        HANDLE const thread = os::startThread(main, &seven, 0x40000);
        ASSERT_NE(thread, nullptr);
        for (int time : {1, 2}) EXPECT_EQ(os::waitFor(thread, os::waitForever), os::waitObject) << time;
        EXPECT_TRUE(os::threadExitCode(thread, code) && code == 7);
        os::closeHandle(thread);
    }
    HANDLE const event = os::createEvent(), thread = os::startThread(waitForArgument, event, 0x40000);
    EXPECT_TRUE(os::threadExitCode(thread, code) && code == os::threadStillActive);
    os::setThreadPriority(thread, -2);
    os::lendPriority(thread);
    EXPECT_EQ(os::waitFor(thread, 0), os::waitTimedOut);
    os::signalEvent(event);
    EXPECT_EQ(os::waitFor(thread, os::waitForever), os::waitObject);
    EXPECT_FALSE(os::threadExitCode(event, code));
    os::closeHandle(thread);
    os::closeHandle(event);
}

}
