/// Messages to windows, from any thread.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN {

/// Puts a message into the queue of the window's thread and returns at once. WinError "Error "TEXT" calling
/// PostMessage" when the window is gone or its queue is full. Give it a window: Windows takes a null one for the queue of
/// the calling thread, and where windows belong to an X server it is refused as one that is gone.
///
/// Where windows belong to an X server, the window receives a client message of five 32-bit words and of type INTEGER:
/// the message, then each parameter with its low half before its high half.
ORN_API void OrnPostMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam);

}
