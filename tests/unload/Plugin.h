/// Dynamic libraries, as a program loads them that may not be linked to anything.
#pragma once

#include <string>

void* loadPlugin(std::string const& path);  ///< null when it cannot be loaded
void unloadPlugin(void* plugin);            ///< it, and what it brought with it

using PluginFunction = int (*)(int);
PluginFunction pluginFunction(void* plugin, char const* name);

bool isLoaded(std::string const& library);  ///< by the name without a folder
