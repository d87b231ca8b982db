#include "tests/support/ThreadName.h"

// Only a debugger learns the name.
std::optional<std::string> nameOfThisThread() { return std::nullopt; }
