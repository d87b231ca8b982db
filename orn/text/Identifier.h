/// Small numbers that no two identifiers made in a process share.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <atomic>
#include <compare>
#include <iosfwd>

/// A process-unique number, handed out in the order of creation on any thread: 1, 2, 3, … and after 2³¹ − 1 on from −2³¹.
class ORN_API Identifier {
public:
    struct PODTYPE {
        LONG value;
    };

    Identifier() noexcept;  ///< the next number
    constexpr explicit Identifier(PODTYPE pod) noexcept : value_{pod.value} {}
    constexpr Identifier(Identifier const&) noexcept = default;
    constexpr Identifier& operator=(Identifier const&) noexcept = default;

    constexpr PODTYPE toPod() const noexcept { return {value_}; }

    friend constexpr bool operator==(Identifier, Identifier) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(Identifier, Identifier) noexcept = default;

private:
    static std::atomic<LONG> nextId;

    LONG value_;
};

static_assert(sizeof(Identifier) == 4 && sizeof(Identifier::PODTYPE) == 4);

/// The decimal value in angle brackets.
ORN_API std::wostream& operator<<(std::wostream& stream, Identifier const& identifier);
