/// What the system calls the calling thread, where it tells.
#pragma once

#include <optional>
#include <string>

std::optional<std::string> nameOfThisThread();
