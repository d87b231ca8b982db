/// A mutual-exclusion lock that its thread may enter again: a CRITICAL_SECTION without spin count on Windows, a recursive
/// mutex on Linux.
#pragma once

#include "orn/os/Types.h"

#include <cstddef>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace ORN::os {

#if defined(_WIN32)

/// Room for a CRITICAL_SECTION, whose declaration stays out of here.
struct CriticalSection {
    alignas(void*) std::byte room[40];
};

#else

struct CriticalSection {
    pthread_mutex_t mutex;
};

#endif

void initialise(CriticalSection& section) noexcept;  ///< of zero-filled room; it must not be moved from then on
void destroy(CriticalSection& section) noexcept;     ///< no thread is inside
void enter(CriticalSection& section) noexcept;
void leave(CriticalSection& section) noexcept;  ///< by the thread that entered, once for each time

}
