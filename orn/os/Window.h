/// The windows on the screen: how they nest, which lies above which, and messages to them. A window that is gone has
/// neither parent nor siblings and takes no message. Without a display every window counts as gone.
#pragma once

#include "orn/os/Types.h"

#include <functional>

namespace ORN::os {

/// Null for a window that is gone, and for the root window, which holds all others.
HWND parentWindow(HWND window) noexcept;

/// Call the visitor for a window and its siblings, whose parent the caller names; for the top-level windows; or for a
/// window's children. The front-most window comes first, and the visit ends when the visitor returns false. Exceptions
/// of the visitor reach the caller. Where windows belong to a server, each visit is one request and its answer.
/// @{
void visitSiblings(HWND window, HWND parent, std::function<bool(HWND)> const& visitor);
void visitTopLevelWindows(std::function<bool(HWND)> const& visitor);
void visitChildWindows(HWND window, std::function<bool(HWND)> const& visitor);
/// @}

/// Puts a message into the queue of a window's thread. False when that fails; lastError() says why.
bool postMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) noexcept;

}
