#include "orn/os/LocalTime.h"

#include <ctime>

namespace ORN::os {

std::string localTimeText(std::int64_t seconds) {
    char text[64];
    std::time_t const time{seconds};
    return ::ctime_r(&time, text) != nullptr ? text : "";
}

std::int64_t secondsSince1970() noexcept { return std::time(nullptr); }

}
