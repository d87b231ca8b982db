/// The system's own forms of file names.
#pragma once

#include <string>

namespace ORN::os {

wchar_t pathSeparator() noexcept;

/// The absolute form of a name, by its text alone: links are not followed. Empty when the system cannot form it, or the
/// name holds a zero.
std::wstring fullPath(std::wstring const& name);

/// The long form of a name that exists; empty when it does not, or where names have one form only.
std::wstring longPath(std::wstring const& name);

}
