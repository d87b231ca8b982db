#include "orn/os/CriticalSection.h"

namespace ORN::os {

void initialise(CriticalSection& section) noexcept {
    // The C library allocates nothing for a mutex or its attributes, so these calls cannot fail.
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&section.mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

void destroy(CriticalSection& section) noexcept { pthread_mutex_destroy(&section.mutex); }
void enter(CriticalSection& section) noexcept { pthread_mutex_lock(&section.mutex); }
void leave(CriticalSection& section) noexcept { pthread_mutex_unlock(&section.mutex); }

}
