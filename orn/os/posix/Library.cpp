#include "orn/os/Library.h"

#include "orn/os/Fault.h"
#include "orn/os/posix/NativeName.h"

#include <cstdlib>
#include <filesystem>
#include <memory>

#include <dlfcn.h>
#include <gnu/lib-names.h>
#include <link.h>

namespace ORN::os {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// Empty for a name with a backslash. Here that is a character like any other, but callers divide paths at it, and would
/// come to a different folder.
std::wstring plainName(std::string const& native) {
    return native.find('\\') == std::string::npos ? wideName(native) : std::wstring{};
}

}

std::wstring systemDirectory() {
    if (ORN_OS_REFUSED("GetSystemDirectory")) return {};
    // The folder where the loader found this process's C library. That is right for every architecture and distribution.
    void* const runtime = ::dlopen(LIBC_SO, RTLD_LAZY | RTLD_NOLOAD);
    if (runtime == nullptr) return {};
    link_map const* map = nullptr;
    std::unique_ptr<char, Free> file;
    // The loader's name may lead through links, which the folder must not have.
    if (::dlinfo(runtime, RTLD_DI_LINKMAP, &map) == 0) file.reset(::realpath(map->l_name, nullptr));
    ::dlclose(runtime);
    return file != nullptr ? plainName(std::filesystem::path{file.get()}.parent_path().native()) : std::wstring{};
}

std::wstring programFile() {
    if (ORN_OS_REFUSED("GetModuleFileName")) return {};
    std::error_code failed;
    std::filesystem::path const file = std::filesystem::read_symlink("/proc/self/exe", failed);
    return !failed ? plainName(file.native()) : std::wstring{};
}

HINSTANCE errorReportLibrary() noexcept { return nullptr; }

HINSTANCE loadLibrary(std::wstring const& file, Needs) {
    std::string const native = nativeName(file);
    // The loader would search its folders for a name without a slash.
    if (!native.starts_with('/')) return nullptr;
    // The names of the library must not take the place of those that other libraries ask for.
    return static_cast<HINSTANCE>(::dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL));
}

void* libraryFunction(HINSTANCE library, char const* name) noexcept {
    return library != nullptr ? ::dlsym(library, name) : nullptr;
}

}
