#include "orn/os/LocalTime.h"

#include <ctime>

namespace ORN::os {

std::string localTimeText(std::int64_t seconds) {
    char text[64];
    __time64_t const time{seconds};
    return ::_ctime64_s(text, sizeof text, &time) == 0 ? text : "";
}

std::int64_t secondsSince1970() noexcept { return std::time(nullptr); }

}
