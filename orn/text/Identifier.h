/// Small numbers that are unique in a process.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <atomic>
#include <compare>
#include <iosfwd>

/// A process-unique number, handed out in the order of creation on any thread: 1, 2, 3, … and after 2³¹ − 1 on from
/// −2³¹.
class ORN_API Identifier {
public:
    /// The number, for records.
    struct PODTYPE {
        LONG value;  ///< as toPod gives it
    };

    Identifier() noexcept;  ///< the next number
    constexpr explicit Identifier(PODTYPE pod) noexcept
        : value_{pod.value} {}                                   ///< this number, which other identifiers may have
    constexpr Identifier(Identifier const&) noexcept = default;  ///< the same number
    constexpr Identifier& operator=(Identifier const&) noexcept = default;  ///< the same number

    constexpr PODTYPE toPod() const noexcept { return {value_}; }  ///< the number

    /// By number.
    /// @{
    friend constexpr bool operator==(Identifier, Identifier) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(Identifier, Identifier) noexcept = default;
    /// @}

private:
    static std::atomic<LONG> nextId;

    LONG value_;
};

static_assert(sizeof(Identifier) == 4 && sizeof(Identifier::PODTYPE) == 4);

/// The decimal value in angle brackets.
ORN_API std::wostream& operator<<(std::wostream& stream, Identifier const& identifier);
