/// Libraries that serve one service each. Each is opened when its service is first used, so that a program which does not
/// use the service neither loads the library nor needs it. An open library stays open until the process ends.
///
///     #define ORN_LIBXCB_FUNCTIONS(use) use(xcb_connect) use(xcb_disconnect)
///     ORN_SERVICE_LIBRARY(libxcb, ORN_LIBXCB_FUNCTIONS)
///
///     if (!libxcb.open()) return fail(libxcb.missing());
///     xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
///
/// In the namespace of the macro, the names of the functions then mean those of the opened library. They have the types
/// that the library's header declares. A function that is not in the list does not link.
#pragma once

#include "orn/os/Types.h"

#include <atomic>
#include <cstddef>
#include <span>
#include <string>

namespace ORN::os {

/// The name and the address of a function. The address is null until the library is open.
struct LibraryEntry {
    char const* name;
    std::atomic<void*> address;
};

template <typename Signature>
struct LibraryFunction : LibraryEntry {
    explicit constexpr LibraryFunction(char const* itsName) noexcept : LibraryEntry{itsName, nullptr} {}

    /// Lets the object be called like the function. The library must be open.
    operator Signature*() const noexcept {
        return reinterpret_cast<Signature*>(address.load(std::memory_order_relaxed));
    }
};

class ServiceLibrary {
public:
    enum Service : DWORD { libcurl, liblcms2, libsqlite3, libuuid, libxcb };

    constexpr ServiceLibrary(Service service, std::span<LibraryEntry* const> entries) noexcept
        : service_{service}, entries_{entries} {}

    /// Opens the library unless it is open. False when it is missing, or lacks one of the functions; the next call tries
    /// again. Any thread may call: threads that come at the same time store the same addresses, and there is no lock that
    /// a fork could leave behind.
    bool open() noexcept;

    /// The error code of a call that needs the library and cannot have it. As a HRESULT it is a failure.
    DWORD missing() const noexcept { return firstMissing + service_; }

    /// The text of such a code; empty for every other one.
    static std::wstring textOfMissing(DWORD code);

private:
    /// Bit 31 marks a failure, and bit 29 a code that no system uses.
    static constexpr DWORD firstMissing = 0xA0000001;

    Service service_;
    std::span<LibraryEntry* const> entries_;
    std::atomic<bool> isOpen_{false};
};

// A name that is declared stands in no parentheses.
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define ORN_LIBRARY_FUNCTION(function) inline constinit LibraryFunction<decltype(::function)> function{#function};
#define ORN_LIBRARY_ENTRY(function) &(function),

/// Declares the functions of a list, and the library that has them.
#define ORN_SERVICE_LIBRARY(library, functions)                                                 \
    functions(ORN_LIBRARY_FUNCTION) inline constinit LibraryEntry* const library##Entries[] = { \
        functions(ORN_LIBRARY_ENTRY)};                                                          \
    inline constinit ServiceLibrary library{ServiceLibrary::library, library##Entries};

}
