/// The system's universally unique identifiers. A status is 0 for success, and otherwise one of Windows' RPC statuses.
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

/// Makes a new identifier. Off Windows it consists of random bits (version 4).
LONG createUuid(Uuid& uuid) noexcept;

/// Gives the identifier of sixteen zeros.
LONG createNilUuid(Uuid& uuid) noexcept;

/// Reads a terminated text of the 36-character form, in either case. Another text gives errorUuidInvalidText and leaves
/// the value alone.
LONG parseUuid(wchar_t const* text, Uuid& uuid) noexcept;

bool uuidIsNil(Uuid const& uuid, LONG& status) noexcept;

/// Compares the three fields, then the eight bytes, all of them unsigned. Returns -1, 0 or 1.
int compareUuids(Uuid const& a, Uuid const& b, LONG& status) noexcept;

}
