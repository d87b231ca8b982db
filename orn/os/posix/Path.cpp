#include "orn/os/Path.h"

#include "orn/os/CodePage.h"
#include "orn/os/Fault.h"

#include <memory>
#include <vector>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <unistd.h>

namespace ORN::os {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// Empty when the system cannot tell.
std::wstring currentFolder() {
    if (ORN_OS_REFUSED("_wfullpath")) return {};
    std::unique_ptr<char, Free> const native{::getcwd(nullptr, 0)};
    // The kernel puts "(unreachable)" before a folder that lies outside of the process's root.
    if (native == nullptr || native.get()[0] != '/') return {};
    std::size_t const bytes = std::strlen(native.get());
    // In some code pages a byte makes more than one unit.
    std::wstring wide(4 * bytes, L'\0');
    int const units =
        multibyteToWide(native.get(), static_cast<int>(bytes), wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(units));
    return wide;
}

}

wchar_t pathSeparator() noexcept { return L'/'; }

std::wstring fullPath(std::wstring const& name) {
    if (name.find(L'\0') != std::wstring::npos) return {};
    // A relative name stands behind the current folder, an empty one is that folder.
    std::wstring whole = name;
    if (!name.starts_with(L'/')) {
        whole = currentFolder();
        if (whole.empty()) return {};
        if (!name.empty()) whole += L'/' + name;
    }

    // Above the root there is nothing. A slash at the end names a folder, and stays.
    std::vector<std::wstring_view> parts;
    std::wstring_view rest = whole;
    bool folder = true;
    while (!rest.empty()) {
        std::wstring_view const part = rest.substr(0, rest.find(L'/'));
        folder = part.size() < rest.size();
        rest.remove_prefix(part.size() + (folder ? 1 : 0));
        if (part == L"..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != L".") {
            parts.push_back(part);
        }
    }

    std::wstring result;
    for (std::wstring_view const part : parts) (result += L'/') += part;
    if (folder || parts.empty()) result += L'/';
    return result;
}

std::wstring longPath(std::wstring const&) { return {}; }

}
