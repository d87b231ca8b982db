#include "orn/Version.h"

namespace ORN {

int version() noexcept { return ORN_VERSION; }

}
