/// A law is what holds for every input. It stands once, in a file named after it, and two run it: the test program over the
/// seeds in corpus/NAME and inputs made from them, on every system, and the fuzzer.
///
///     ORN_LAW(CSV) {
///         std::wstring const text = input.text();
///         same("records read", read(text), expected(text));
///     }
#pragma once

#include "fuzz/Input.h"

#include <concepts>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

namespace fuzz {

inline std::string shown(std::integral auto value) { return std::to_string(value); }

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

/// Ends a run whose law is broken. It is no std::exception, so that no law takes it for an error of the library.
struct Broken {
    std::string text;
};

[[noreturn]] inline void broken(char const* law, std::string const& actual, std::string const& expected) {
    throw Broken{std::string{"Law broken: "} + law + "\n  actual:   " + actual + "\n  expected: " + expected};
}

inline void holds(char const* law, bool condition) {
    if (!condition) broken(law, "no", "yes");
}

template <typename T>
void same(char const* law, T const& actual, std::type_identity_t<T> const& expected) {
    if (!(actual == expected)) broken(law, shown(actual), shown(expected));
}

/// A law in the list of those that the program was linked with.
struct Law {
    Law(char const* theName, void (*theRun)(Input)) : name{theName}, run{theRun} { all().push_back(*this); }
    static std::vector<Law>& all() {
        static std::vector<Law> laws;
        return laws;
    }

    std::string name;
    void (*run)(Input);
};

}

/// Defines a law. Its body may call what is in fuzz by the short name, and reads the input named `input`.
#define ORN_LAW(name)                             \
    namespace fuzz {                              \
    static void run##name(Input input);           \
    static Law const law##name{#name, run##name}; \
    }                                             \
    void fuzz::run##name(Input input)
