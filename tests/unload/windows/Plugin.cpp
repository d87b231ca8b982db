#include "tests/unload/Plugin.h"

#include <windows.h>

void* loadPlugin(std::string const& path) { return LoadLibraryA(path.c_str()); }

void unloadPlugin(void* plugin) { FreeLibrary(static_cast<HMODULE>(plugin)); }

PluginFunction pluginFunction(void* plugin, char const* name) {
    return reinterpret_cast<PluginFunction>(
        reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(plugin), name)));
}

bool isLoaded(std::string const& library) { return GetModuleHandleA(library.c_str()) != nullptr; }
