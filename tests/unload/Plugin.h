/// Dynamic libraries, as a program loads them that may not be linked to anything.
#pragma once

#include <string>

class Plugin {
public:
    explicit Plugin(std::string const& path);  ///< throws when it cannot be loaded
    ~Plugin();                                 ///< unloads it, and what it brought with it
    Plugin(Plugin const&) = delete;
    Plugin& operator=(Plugin const&) = delete;

    using Function = int (*)(int);
    Function function(char const* name) const;

    static bool isLoaded(std::string const& library);  ///< by the name without a folder

private:
    void* handle_;
};
