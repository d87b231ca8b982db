/// The process's debugging level, for those who set it.
#pragma once

#include "orn/foundation/DebuggingLevel.h"

#include <atomic>

namespace DebugStream {

extern std::atomic<DebuggingLevel> currentLevel;

}
