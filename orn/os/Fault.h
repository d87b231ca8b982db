/// Lets the inner tests make one call of the seam fail as the system would let it fail. In the library it is nothing.
#pragma once

#if defined(ORN_OS_FAULTS)

namespace ORN::os {

/// True when the test that is running wants the call of this name to fail now.
bool refused(char const* call) noexcept;

}

#define ORN_OS_REFUSED(call) (::ORN::os::refused(call))

#else

#define ORN_OS_REFUSED(call) false

#endif
