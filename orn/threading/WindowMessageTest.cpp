#include "orn/threading/WindowMessage.h"

#include "orn/foundation/Error.h"
#include "tests/support/TestWindow.h"

#include <gtest/gtest.h>

namespace {

TEST(WindowMessage, AllBitsOfTheParametersArrive) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow window;
    ORN::OrnPostMessage(window.handle(), 0x8123, 0xFEDCBA9876543210u, -0x123456789ABCDEF0);
    auto const message = window.nextMessage();
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->number, 0x8123u);
    EXPECT_EQ(message->wParam, 0xFEDCBA9876543210u);
    EXPECT_EQ(message->lParam, -0x123456789ABCDEF0);
}

TEST(WindowMessage, AWindowThatIsGoneIsAnError) {
    try {
        ORN::OrnPostMessage(reinterpret_cast<HWND>(0x7FF0), 0x8123, 0, 0);
        FAIL() << "a message went to a window that is gone";
    } catch (WinError const& error) {
        EXPECT_EQ(
            std::wstring{error.wWhat()},
            L"Error \"" + formatMessage(DWORD{1400}, static_cast<wchar_t const*>(nullptr)) + L"\" calling PostMessage");
    }
}

}
