// Loads the plugin, uses it, unloads it: on the main thread, and on one that has ended before the plugin goes. Exit code
// 0, or a number that tells what failed.
#include "tests/unload/Plugin.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

int main(int count, char** words) {
    if (count != 4) return 64;
    std::string const path = words[1], library = words[2];
    int const rounds = std::atoi(words[3]);
    try {
        for (int round = 0; round < rounds; ++round) {
            int failed = 64;
            if (Plugin::isLoaded(library)) return 65;
            {
                Plugin const plugin{path};
                if (!Plugin::isLoaded(library)) return 66;
                auto const use = plugin.function("useLibrary");
                if (use == nullptr) return 67;
                std::thread{[&] { failed = use(round); }}.join();
            }
            if (failed != 0) return failed;
            if (Plugin::isLoaded(library)) return 68;
        }
        for (int round = 0; round < rounds; ++round) {
            {
                Plugin const plugin{path};
                if (int const failed = plugin.function("useLibrary")(round); failed != 0) return failed;
            }
            if (Plugin::isLoaded(library)) return 70;
        }
    } catch (std::exception const& error) {
        std::printf("%s\n", error.what());
        return 69;
    }
    return 0;
}
