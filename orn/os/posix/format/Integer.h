/// Integers and pointers in a format.
#pragma once

#include "orn/os/posix/format/Sink.h"

#include <cstdint>
#include <type_traits>

namespace ORN::os::format {

/// A number by its size and its sign, in the base of the conversion's type.
void putInteger(Sink& sink, FormatConversion const& conversion, std::uint64_t magnitude, bool negative) noexcept;

/// An integer in the width of its type, which counts as signed only where the conversion's type does.
template <typename Signed>
void putInteger(Sink& sink, FormatConversion const& conversion, Signed value) noexcept {
    bool const negative = (conversion.type == L'd' || conversion.type == L'i') && value < 0;
    std::uint64_t const magnitude = negative ? 0 - static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
                                             : static_cast<std::make_unsigned_t<Signed>>(value);
    putInteger(sink, conversion, magnitude, negative);
}

}
