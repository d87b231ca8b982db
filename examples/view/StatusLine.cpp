#include "view/StatusLine.h"

#include "orn/foundation/Error.h"
#include "orn/text/Printf.h"

#include <commctrl.h>

namespace view {

namespace {

HWND statusBar(HWND parent) {
    HWND const bar =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent, nullptr, nullptr, nullptr);
    if (bar == nullptr) throw WinError{L"CreateWindowEx", GetLastError()};
    return bar;
}

}

StatusLine::StatusLine(HWND parent, PictureEvents const& events, std::wstring const& finishedText)
    : bar_{statusBar(parent)},
      bandsDone_{*events.bandsDone, [this](int percent) { show(stringPrintf(L"drawing: %d %%", percent)); }},
      finished_{*events.finished, [this, finishedText] { show(finishedText); }},
      failed_{*events.failed, [this](std::wstring const& why) { show(L"not drawn: " + why); }} {}

int StatusLine::height() const {
    RECT place;
    return GetWindowRect(bar_, &place) ? place.bottom - place.top : 0;
}

void StatusLine::fitParent() { SendMessageW(bar_, WM_SIZE, 0, 0); }

void StatusLine::show(std::wstring const& text) { SetWindowTextW(bar_, text.c_str()); }

}
