/// Downloads into the user's cache.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// Downloads the whole content of a URL, and gives the name of the file with it. Returns a negative status for a
/// failure, and then changes neither the argument nor the cache. The text for the status is in the message table of
/// "urlmon.dll".
HRESULT downloadToCache(wchar_t const* url, std::wstring& file);

}
