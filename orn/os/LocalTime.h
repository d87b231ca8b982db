/// The time of day where the user is.
#pragma once

#include <cstdint>
#include <string>

namespace ORN::os {

/// The runtime's ctime text, line feed included, of so many seconds since 1970 began in Greenwich; empty where the runtime
/// has none. Any thread may call.
std::string localTimeText(std::int64_t seconds);

std::int64_t secondsSince1970() noexcept;

}
