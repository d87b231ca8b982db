#include "tests/support/TestWindow.h"

#include <windows.h>

struct TestWindow::Imp {
    HWND window;
};

bool TestWindow::possible() {
    static bool const shown = [] {
        TestWindow const trial;
        return trial.handle() != nullptr;
    }();
    return shown;
}

TestWindow::TestWindow(TestWindow const* parent) : imp_{std::make_unique<Imp>()} {
    DWORD const style = (parent != nullptr ? WS_CHILD : WS_POPUP) | WS_VISIBLE;
    imp_->window =
        CreateWindowExW(0, L"STATIC", L"test", style, 10, 10, 100, 100, parent != nullptr ? parent->handle() : nullptr,
                        nullptr, GetModuleHandleW(nullptr), nullptr);
    raise();
}

TestWindow::~TestWindow() { DestroyWindow(imp_->window); }

HWND TestWindow::handle() const { return imp_->window; }

void TestWindow::raise() { SetWindowPos(imp_->window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE); }

bool TestWindow::receives(unsigned int number, std::uint64_t wParam, std::int64_t lParam) {
    ULONGLONG const end = GetTickCount64() + 1000;
    do {
        MSG message;
        if (PeekMessageW(&message, imp_->window, 0x8000, 0xBFFF, PM_REMOVE))
            return message.message == number && message.wParam == wParam && message.lParam == lParam;
        Sleep(1);
    } while (GetTickCount64() < end);
    return false;
}
