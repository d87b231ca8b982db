#include "view/StatusLine.h"

#include "orn/text/Printf.h"

namespace view {

StatusLine::StatusLine(Window& window, PictureEvents const& events, std::wstring const& finishedText)
    : bandsDone_{*events.bandsDone,
                 [&window](int percent) { window.setStatus(stringPrintf(L"drawing: %d %%", percent)); }},
      finished_{*events.finished, [&window, finishedText] { window.setStatus(finishedText); }},
      failed_{*events.failed, [&window](std::wstring const& why) { window.setStatus(L"not drawn: " + why); }} {}

}
