/// A cache folder of a test's own, for what the library itself keeps in the user's.
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdlib>

class CacheFolder : public TemporaryFolder {
#if defined(__linux__)
public:
    CacheFolder() { setenv("XDG_CACHE_HOME", std::filesystem::path{name()}.c_str(), 1); }
    ~CacheFolder() { unsetenv("XDG_CACHE_HOME"); }
#endif
};
