#include "orn/os/LocalTime.h"

#include <ctime>

namespace ORN::os {

std::string localTimeText(std::int64_t seconds) {
    __time64_t const lastOfYear3000 = 0x793406FFF;  // beyond it the runtime ends the process
    if (seconds < 0 || seconds > lastOfYear3000) return {};
    char text[64];
    __time64_t const time{seconds};
    return ::_ctime64_s(text, sizeof text, &time) == 0 ? text : "";
}

std::int64_t secondsSince1970() noexcept { return std::time(nullptr); }

}
