/// Which orn this is: of the headers, and of the library that the program has loaded.
#pragma once

#include "orn/Export.h"

/// The version of these headers. The build takes the library's from here.
/// @{
#define ORN_VERSION_MAJOR 0
#define ORN_VERSION_MINOR 1
#define ORN_VERSION_PATCH 0
/// @}

/// One number for comparisons, as in `#if ORN_VERSION >= 10203`, which asks for 1.2.3 or later.
#define ORN_VERSION (ORN_VERSION_MAJOR * 10000 + ORN_VERSION_MINOR * 100 + ORN_VERSION_PATCH)

namespace ORN {

/// The ORN_VERSION of the library that is loaded. Any thread may ask, at any time.
ORN_API int version() noexcept;

}
