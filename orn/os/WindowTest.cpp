#include "orn/os/Window.h"

#include "tests/support/TestWindow.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace os = ORN::os;

namespace {

// In which order windows lie is what the draw thread's tests see.
TEST(Window, TheTreeIsWhatTheScreenShows) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back;
    TestWindow const inner{&back}, innerFront{&back};

    EXPECT_EQ(os::parentWindow(inner.handle()), back.handle());
    HWND const root = os::parentWindow(back.handle());
    EXPECT_TRUE(root != nullptr && os::parentWindow(root) == nullptr);
    os::visitTopLevelWindows([&](HWND window) {
        EXPECT_NE(window, inner.handle());
        return true;
    });

    std::vector<HWND> children, siblings;
    os::visitChildWindows(back.handle(), [&](HWND window) {
        children.push_back(window);
        return children.size() < 5;
    });
    EXPECT_EQ(children, (std::vector{innerFront.handle(), inner.handle()}));
    os::visitSiblings(inner.handle(), back.handle(), [&](HWND window) {
        siblings.push_back(window);
        return window != inner.handle();
    });
    EXPECT_EQ(siblings, children);
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
