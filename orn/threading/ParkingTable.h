/// The process-wide table on which threads that wait for any lock word are parked. It is constant-initialised, so locks
/// work while static objects are built. The system's objects for it are made when the library loads; when the system
/// refuses one, the library does not load.
#pragma once

#include "orn/os/Parking.h"
#include "orn/threading/EpochParking.h"
#include "orn/threading/LockSteps.h"
#include "orn/threading/SemaphoreParking.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace ORN::Threading {

inline constexpr std::size_t parkingSlots = 32;

/// What the threads of a slot sleep on.
using Parking = std::conditional_t<os::ParkingKernel::comparesWords, EpochParking<os::ParkingKernel>,
                                   SemaphoreParking<os::ParkingKernel>>;

/// The slot of the lock word at this address, 0 to 31. Unrelated words may share one.
constexpr std::size_t slotNumber(std::uint64_t address) noexcept {
    return static_cast<std::size_t>((address * 0x9E3779B97F4A7C14u) >> 59);
}

struct alignas(64) TableSlot : ParkingSlot<Parking> {};

extern TableSlot parkingTable[parkingSlots];

inline TableSlot& slotOf(LONG const volatile& word) noexcept {
    return parkingTable[slotNumber(reinterpret_cast<std::uintptr_t>(&word))];
}

/// Makes the system's objects of each slot, in order. Throws WinError, and leaves nothing behind, when the system
/// refuses one.
void createParking();
void closeParking() noexcept;

}
