/// The windows on the screen: how they nest and which lies above which, and messages to them. A window that is gone has
/// neither parent nor siblings and takes no message; so it is for every window where there is no display.
#pragma once

#include "orn/os/Types.h"

#include <functional>

namespace ORN::os {

/// Null for a window that is gone and for the one that holds all others.
HWND parentWindow(HWND window) noexcept;

/// Shows the windows with this one's parent, which the caller names; the top-level windows; or a window's children:
/// front-most first, until the visitor returns false. What the visitor throws reaches the caller. Where windows belong
/// to a server, each of these is one request and its answer.
void visitSiblings(HWND window, HWND parent, std::function<bool(HWND)> const& visitor);
void visitTopLevelWindows(std::function<bool(HWND)> const& visitor);
void visitChildWindows(HWND window, std::function<bool(HWND)> const& visitor);

/// Puts a message into the queue of a window's thread. False, told by lastError(), when that cannot be.
bool postMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) noexcept;

}
