#include "orn/threading/WindowMessage.h"

#include "orn/foundation/Error.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Window.h"

namespace ORN {

void OrnPostMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) {
    if (!os::postMessage(window, message, wParam, lParam)) throw WinError{L"PostMessage", os::lastError()};
}

}
