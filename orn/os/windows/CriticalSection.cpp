#include "orn/os/CriticalSection.h"

#include <windows.h>

namespace ORN::os {

namespace {

// The header spells the room out, because windows.h stays out of public headers.
static_assert(sizeof(CriticalSection) == sizeof(CRITICAL_SECTION) &&
              alignof(CriticalSection) == alignof(CRITICAL_SECTION));

CRITICAL_SECTION* systems(CriticalSection& section) noexcept {
    return reinterpret_cast<CRITICAL_SECTION*>(section.room);
}

}

// Since Windows Vista this call does not fail for lack of memory, so it may be noexcept.
void initialise(CriticalSection& section) noexcept { InitializeCriticalSection(systems(section)); }
void destroy(CriticalSection& section) noexcept { DeleteCriticalSection(systems(section)); }
void enter(CriticalSection& section) noexcept { EnterCriticalSection(systems(section)); }
void leave(CriticalSection& section) noexcept { LeaveCriticalSection(systems(section)); }

}
