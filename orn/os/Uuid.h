/// The system's universally unique identifiers. A status is 0 for success and one of Windows' RPC statuses otherwise.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>

namespace ORN::os {

/// The sixteen bytes as a Windows GUID lays them out.
struct Uuid {
    std::uint32_t data1;
    std::uint16_t data2, data3;
    std::uint8_t data4[8];
};

inline constexpr LONG uuidInvalidText = 1705;  ///< parseUuid: not the 36-character form

/// A new one; random elsewhere than on Windows.
LONG createUuid(Uuid& uuid) noexcept;

/// The one of sixteen zeros.
LONG createNilUuid(Uuid& uuid) noexcept;

/// Reads a terminated text of the 36-character form, in either case; leaves the value alone when it is none.
LONG parseUuid(wchar_t const* text, Uuid& uuid) noexcept;

bool uuidIsNil(Uuid const& uuid, LONG& status) noexcept;

/// -1, 0 or 1: by the first field, the second, the third, then byte by byte, all unsigned.
int compareUuids(Uuid const& a, Uuid const& b, LONG& status) noexcept;

}
