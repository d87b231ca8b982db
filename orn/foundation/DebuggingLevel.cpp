#include "orn/foundation/DebuggingLevel.h"

#include <atomic>

namespace DebugStream {

namespace {

constinit std::atomic<DebuggingLevel> currentLevel{debugNormal};

}

// No other memory depends on the level, so a relaxed load is enough.
DebuggingLevel debuggingLevel() noexcept { return currentLevel.load(std::memory_order_relaxed); }

SetVerbose::~SetVerbose() { currentLevel = saved_; }

void SetVerbose::doVerbose() const noexcept { currentLevel = requested_; }

}
