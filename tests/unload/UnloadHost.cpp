// Loads the plugin, uses it, unloads it: on a thread that has ended before the plugin goes, and on the main one. Exit code
// 0, or a number that tells what failed.
#include "tests/unload/Plugin.h"

#include <thread>

int main(int count, char** words) {
    if (count != 3) return 64;
    std::string const path = words[1], library = words[2];
    int const rounds = 10;
    for (int round = 0; round < 2 * rounds; ++round) {
        if (isLoaded(library)) return 65;
        void* const plugin = loadPlugin(path);
        if (plugin == nullptr || !isLoaded(library)) return 66;
        auto const use = pluginFunction(plugin, "useLibrary");
        int failed = 0;
        if (round < rounds)
            std::thread{[&] { failed = use(round); }}.join();
        else
            failed = use(round - rounds);
        if (failed != 0) return failed;
        unloadPlugin(plugin);
    }
    return isLoaded(library) ? 67 : 0;
}
