/// The store of interned texts.
#pragma once

#include "orn/Export.h"

struct Quark;

/// Keeps every distinct text once. The process has one table, which quarks use. It exists before any code of the
/// library or of its users runs, and until the library is unloaded.
class ORN_API QuarkTable {
public:
    constexpr QuarkTable() noexcept = default;                           ///< for the implementation
    constexpr QuarkTable(QuarkTable const&) noexcept {}                  ///< copies nothing
    QuarkTable& operator=(QuarkTable const&) noexcept { return *this; }  ///< copies nothing

    /// The stored copy of a terminated text, the same pointer for equal texts; from any thread. Throws std::bad_alloc,
    /// with nothing stored, and what the lock throws.
    virtual wchar_t const* intern(wchar_t const* text) = 0;

    virtual wchar_t const* value(wchar_t const* stored) const = 0;  ///< the text of a stored pointer: the same pointer

    virtual ~QuarkTable();

private:
    friend struct Quark;

    static QuarkTable& quarkTable() noexcept;
};
