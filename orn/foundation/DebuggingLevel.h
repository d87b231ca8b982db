/// How much the process tells about itself for diagnosis.
#pragma once

#include "orn/Export.h"

#include <cstdint>

namespace DebugStream {

enum DebuggingLevel : std::int32_t {
    debugNothing = 0,
    debugFailures = 1,
    debugNormal = 2,  ///< the level at start
    debugEverything = 3,
};

/// The process's current level; any thread may ask.
ORN_API DebuggingLevel debuggingLevel() noexcept;

}
