#include "tests/support/ThreadName.h"

#include <pthread.h>

std::optional<std::string> nameOfThisThread() {
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}
