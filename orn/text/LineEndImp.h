/// The characters that end a line of a text file or a record of comma-separated text.
#pragma once

namespace ORN {

/// LF, FF, CR, NEL, LS, PS: what CodePoint::eolCode knows.
constexpr bool isLineEnd(unsigned int value) noexcept {
    return value == 0x0A || value == 0x0C || value == 0x0D || value == 0x85 || value == 0x2028 || value == 0x2029;
}

}
