/// Downloads into the user's cache.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// Leaves the name of a file that holds the whole of what the URL stands for. Negative for a failure, which leaves the
/// argument and the cache as they were; its text is in the message table of "urlmon.dll".
HRESULT downloadToCache(wchar_t const* url, std::wstring& file);

}
