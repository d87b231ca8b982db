#include "tests/unload/Plugin.h"

#include <dlfcn.h>

#include <stdexcept>

Plugin::Plugin(std::string const& path) : handle_{dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)} {
    if (handle_ == nullptr) throw std::runtime_error{dlerror()};
}

Plugin::~Plugin() { dlclose(handle_); }

Plugin::Function Plugin::function(char const* name) const { return reinterpret_cast<Function>(dlsym(handle_, name)); }

bool Plugin::isLoaded(std::string const& library) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}
