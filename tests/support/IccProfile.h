/// Small RGB profiles by their bytes: three primaries, one curve, and whatever texts a test puts in.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace icc {

using Bytes = std::string;

inline Bytes number(std::uint32_t value) {
    Bytes bytes;
    for (int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift);
    return bytes;
}

/// A version 2 text; the count includes the terminating zero, unless a test lies.
inline Bytes description(Bytes const& text, std::uint32_t count) {
    return "desc" + number(0) + number(count) + text + '\0' + Bytes(78, '\0');
}
inline Bytes description(Bytes const& text) { return description(text, static_cast<std::uint32_t>(text.size()) + 1); }

/// A version 4 text in one language, of 16-bit characters that are given by their big-endian bytes.
inline Bytes localized(Bytes const& text) {
    return "mluc" + number(0) + number(1) + number(12) + "enUS" + number(static_cast<std::uint32_t>(text.size())) +
           number(28) + text;
}

using Tags = std::vector<std::pair<Bytes, Bytes>>;
using Primaries = std::array<std::array<double, 3>, 3>;  // the XYZ of red, green and blue under D50

inline constexpr Primaries sRGBPrimaries{
    {{0.4360747, 0.2225045, 0.0139322}, {0.3850649, 0.7168786, 0.0971045}, {0.1430804, 0.0606169, 0.7141733}}};

inline Bytes xyz(std::array<double, 3> const& values) {
    Bytes bytes = "XYZ " + number(0);
    for (double const value : values) bytes += number(static_cast<std::uint32_t>(std::lround(value * 65536)));
    return bytes;
}

/// The curve that is a power, in 1/256; and the straight one between two points, which cuts what is outside.
inline Bytes power(unsigned int exponent256) {
    return "curv" + number(0) + number(1) + static_cast<char>(exponent256 >> 8) + static_cast<char>(exponent256);
}
inline Bytes straight() { return "curv" + number(0) + number(2) + Bytes("\0\0\xFF\xFF", 4); }

inline Tags tags(Bytes const& curve, Primaries const& primaries = sRGBPrimaries, double scale = 1) {
    Tags result{{"wtpt", xyz({0.9642, 1, 0.8249})}};
    for (std::size_t i = 0; i != 3; ++i) {
        auto [x, y, z] = primaries[i];
        result.emplace_back("rgb"[i] + Bytes{"XYZ"}, xyz({x * scale, y * scale, z * scale}));
        result.emplace_back("rgb"[i] + Bytes{"TRC"}, curve);
    }
    return result;
}

inline Bytes profile(Tags const& tags, Bytes const& space = "RGB ", Bytes const& kind = "mntr") {
    Bytes table = number(static_cast<std::uint32_t>(tags.size())), elements;
    std::size_t const start = 128 + 4 + 12 * tags.size();
    for (auto const& [name, element] : tags) {
        table += name + number(static_cast<std::uint32_t>(start + elements.size())) +
                 number(static_cast<std::uint32_t>(element.size()));
        elements += element;
        elements.resize((elements.size() + 3) / 4 * 4);
    }
    Bytes header = number(static_cast<std::uint32_t>(start + elements.size())) + "test" + number(0x02400000) + kind +
                   space + "XYZ " + Bytes("\x07\xEA\0\1\0\1\0\0\0\0\0\0", 12) + "acsp";
    header.resize(68);
    header += number(0xF6D6) + number(0x10000) + number(0xD32D);  // D50
    header.resize(128);
    return header + table + elements;
}

inline unsigned char const* data(Bytes const& bytes) { return reinterpret_cast<unsigned char const*>(bytes.data()); }

}
