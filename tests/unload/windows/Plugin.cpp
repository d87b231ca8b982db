#include "tests/unload/Plugin.h"

#include <windows.h>

#include <stdexcept>

Plugin::Plugin(std::string const& path) : handle_{LoadLibraryA(path.c_str())} {
    if (handle_ == nullptr) throw std::runtime_error{"LoadLibrary: error " + std::to_string(GetLastError())};
}

Plugin::~Plugin() { FreeLibrary(static_cast<HMODULE>(handle_)); }

Plugin::Function Plugin::function(char const* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name)));
}

bool Plugin::isLoaded(std::string const& library) { return GetModuleHandleA(library.c_str()) != nullptr; }
