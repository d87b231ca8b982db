#include "tests/unload/Plugin.h"

#include <dlfcn.h>

void* loadPlugin(std::string const& path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }

void unloadPlugin(void* plugin) { dlclose(plugin); }

PluginFunction pluginFunction(void* plugin, char const* name) {
    return reinterpret_cast<PluginFunction>(dlsym(plugin, name));
}

bool isLoaded(std::string const& library) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
    return handle != nullptr && dlclose(handle) == 0;
}
