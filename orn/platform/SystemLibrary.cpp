#include "orn/platform/SystemLibrary.h"

#include "orn/os/Library.h"
#include "orn/text/FileName.h"

#include <string>
#include <string_view>

namespace ORN {

namespace {

/// Windows drops blanks and dots at the end of a part, so that not only ".." leads upwards.
bool staysInside(std::wstring_view name) {
    for (std::size_t first = 0; first <= name.size();) {
        std::wstring_view const part = name.substr(first, name.find_first_of(L"/\\", first) - first);
        if (!part.empty() && part.find_first_not_of(L". ") == std::wstring_view::npos) return false;
        first += part.size() + 1;
    }
    return true;
}

HINSTANCE load(std::wstring const& directory, wchar_t const* name, os::Needs needs) {
    // With an empty folder the system would search places of its own.
    if (directory.empty() || name == nullptr || !staysInside(name)) return nullptr;
    return os::loadLibrary(joinDirectory(directory, name), needs);
}

}

HINSTANCE LoadSystemLibrary(wchar_t const* name) { return load(os::systemDirectory(), name, os::Needs::ofTheSystem); }

// The working folder has no part in this: anybody may have put a library there.
HINSTANCE LoadProgramLibrary(wchar_t const* name) {
    return load(getDirectory(os::programFile()), name, os::Needs::ofTheProgram);
}

}
