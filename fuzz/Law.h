/// What a target says when its law is broken: both sides, and the end of the program.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

namespace fuzz {

template <typename T>
std::string shown(T const& value) requires std::is_arithmetic_v<T> {
    char text[64];
    if constexpr (std::is_floating_point_v<T>)
        std::snprintf(text, sizeof text, "%.17g (%a)", value, value);
    else
        std::snprintf(text, sizeof text, "%lld", static_cast<long long>(value));
    return text;
}

template <typename Unit>
std::string shown(std::basic_string<Unit> const& text) {
    std::string result = "\"";
    for (Unit const unit : text) {
        auto const value = static_cast<unsigned int>(static_cast<std::make_unsigned_t<Unit>>(unit));
        char escaped[16];
        std::snprintf(escaped, sizeof escaped, value >= 0x20 && value < 0x7F ? "%c" : "<%02X>", value);
        result += escaped;
    }
    return result + '"';
}

template <typename T>
std::string shown(std::vector<T> const& values) {
    std::string result = "{";
    for (T const& value : values) result += (result.size() > 1 ? ", " : "") + shown(value);
    return result + "}";
}

[[noreturn]] inline void broken(char const* law, std::string const& actual, std::string const& expected) {
    std::fprintf(stderr, "Law broken: %s\n  actual:   %s\n  expected: %s\n", law, actual.c_str(), expected.c_str());
    std::abort();
}

inline void holds(char const* law, bool condition) {
    if (!condition) broken(law, "no", "yes");
}

template <typename T>
void same(char const* law, T const& actual, std::type_identity_t<T> const& expected) {
    if (!(actual == expected)) broken(law, shown(actual), shown(expected));
}

}
