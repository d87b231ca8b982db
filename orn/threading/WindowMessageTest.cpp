#include "orn/threading/WindowMessage.h"

#include "tests/support/TestWindow.h"
#include "tests/support/Thrown.h"

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
    EXPECT_EQ(
        thrown([] { ORN::OrnPostMessage(reinterpret_cast<HWND>(0x7FF0), 0x8123, 0, 0); }),
        L"WinError: Error \"" + formatMessage(DWORD{1400}, static_cast<wchar_t*>(nullptr)) + L"\" calling PostMessage");
}

}
