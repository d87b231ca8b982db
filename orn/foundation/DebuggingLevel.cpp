#include "orn/foundation/DebuggingLevelImp.h"

namespace DebugStream {

constinit std::atomic<DebuggingLevel> currentLevel{debugNormal};

DebuggingLevel debuggingLevel() noexcept { return currentLevel.load(std::memory_order_relaxed); }

}
