#include "orn/os/Graphics.h"

#include "orn/os/Fault.h"

#include <windows.h>

// Some versions of gdiplus.h use interfaces of objidl.h without declaring them, so gdiplus.h comes last.
#include <objidl.h>

#include <gdiplus.h>

namespace ORN::os {

namespace {

DWORD errorOf(Gdiplus::Status status) {
    switch (status) {
        case Gdiplus::Ok: return ERROR_SUCCESS;
        case Gdiplus::InvalidParameter: return ERROR_INVALID_PARAMETER;
        case Gdiplus::OutOfMemory: return ERROR_OUTOFMEMORY;
        // With this status alone GDI+ leaves the reason in the thread's last error.
        case Gdiplus::Win32Error: return GetLastError();
        default: return ERROR_GEN_FAILURE;
    }
}

}

DWORD startGraphics(std::uintptr_t& token, GraphicsHooks& hooks) {
    if (ORN_OS_REFUSED("GdiplusStartup")) return ERROR_GEN_FAILURE;
    // TRUE suppresses the background thread. Only then does GDI+ fill the output with the two hooks.
    Gdiplus::GdiplusStartupInput const input{nullptr, TRUE, FALSE};
    Gdiplus::GdiplusStartupOutput output;
    ULONG_PTR started = 0;
    DWORD const error = errorOf(Gdiplus::GdiplusStartup(&started, &input, &output));
    if (error != ERROR_SUCCESS) return error;
    token = started;
    // The header's type for the hook names none of the types of GDI+, because windows.h stays out of it. hookGraphics()
    // casts the pointer back before it calls.
    hooks = {reinterpret_cast<void (*)()>(output.NotificationHook), output.NotificationUnhook};
    return ERROR_SUCCESS;
}

DWORD hookGraphics(GraphicsHooks const& hooks, std::uintptr_t& hookToken) {
    if (ORN_OS_REFUSED("NotificationHook")) return ERROR_GEN_FAILURE;
    ULONG_PTR token = 0;
    DWORD const error = errorOf(reinterpret_cast<Gdiplus::NotificationHookProc>(hooks.hook)(&token));
    if (error == ERROR_SUCCESS) hookToken = token;
    return error;
}

void stopGraphics(std::uintptr_t token) { Gdiplus::GdiplusShutdown(token); }

}
