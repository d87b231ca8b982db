#include "orn/os/Window.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <exception>

namespace ORN::os {

namespace {

/// Carries an exception past the frames of the system.
struct Visit {
    std::function<bool(HWND)> const& visitor;
    HWND parent;
    std::exception_ptr thrown{};
};

BOOL CALLBACK visitOne(HWND window, LPARAM argument) {
    auto& visit = *reinterpret_cast<Visit*>(argument);
    // The system shows grandchildren, too.
    if (visit.parent != nullptr && GetAncestor(window, GA_PARENT) != visit.parent) return TRUE;
    try {
        return visit.visitor(window) ? TRUE : FALSE;
    } catch (...) {
        visit.thrown = std::current_exception();
        return FALSE;
    }
}

}

// GetParent would give the owner of a top-level window.
HWND parentWindow(HWND window) noexcept { return GetAncestor(window, GA_PARENT); }

void visitSiblings(HWND window, HWND, std::function<bool(HWND)> const& visitor) {
    // A walk that meets windows on their way to the back might go round: a session has no more windows than this.
    int left = 0x10000;
    for (HWND next = GetWindow(window, GW_HWNDFIRST); next != nullptr && left > 0; --left) {
        if (!visitor(next)) return;
        next = GetWindow(next, GW_HWNDNEXT);
    }
}

void visitTopLevelWindows(std::function<bool(HWND)> const& visitor) {
    Visit visit{visitor, nullptr};
    // FALSE may only mean that the visitor has ended the walk, so the result tells nothing.
    EnumWindows(visitOne, reinterpret_cast<LPARAM>(&visit));
    if (visit.thrown) std::rethrow_exception(visit.thrown);
}

void visitChildWindows(HWND window, std::function<bool(HWND)> const& visitor) {
    Visit visit{visitor, window};
    EnumChildWindows(window, visitOne, reinterpret_cast<LPARAM>(&visit));
    if (visit.thrown) std::rethrow_exception(visit.thrown);
}

bool postMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) noexcept {
    if (ORN_OS_REFUSED("PostMessage")) {
        SetLastError(ERROR_NOT_ENOUGH_QUOTA);
        return false;
    }
    return PostMessageW(window, message, wParam, lParam) != 0;
}

}
