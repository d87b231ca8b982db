#include "orn/os/Window.h"

#include "tests/support/TestWindow.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace os = ORN::os;

namespace {

// In which order top-level windows lie is what the draw thread's tests see.
TEST(Window, AVisitBeginsAtTheFrontAndEndsWhenTheVisitorSaysSoOrThrows) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back;
    TestWindow const inner{&back}, innerFront{&back};
    EXPECT_EQ(os::parentWindow(inner.handle()), back.handle());
    HWND const root = os::parentWindow(back.handle());
    EXPECT_TRUE(root != nullptr && os::parentWindow(root) == nullptr);

    std::vector<HWND> seen;
    auto const seeThree = [&](HWND window) { return seen.push_back(window), seen.size() != 3; };
    os::visitChildWindows(back.handle(), seeThree);
    os::visitSiblings(inner.handle(), back.handle(), seeThree);
    EXPECT_EQ(seen, (std::vector{innerFront.handle(), inner.handle(), innerFront.handle()}));
    EXPECT_THROW(os::visitTopLevelWindows([](HWND) -> bool { throw std::runtime_error{"from the visitor"}; }),
                 std::runtime_error);
}

TEST(Window, AWindowThatIsGoneHasNoPlace) {
    for (HWND const window : {reinterpret_cast<HWND>(0x7FF0), static_cast<HWND>(nullptr)}) {
        EXPECT_EQ(os::parentWindow(window), nullptr);
        auto const unexpected = [](HWND) {
            ADD_FAILURE() << "a window that is gone has others";
            return false;
        };
        os::visitSiblings(window, nullptr, unexpected);
        os::visitChildWindows(reinterpret_cast<HWND>(0x7FF0), unexpected);
    }
}

}
