/// Where the user's files are.
#pragma once

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace ORN::os {

/// What the environment says, unless this program has more rights than its caller, whose word does not count then.
inline std::string trustedVariable(char const* name) {
    char const* const value = ::secure_getenv(name);
    return value != nullptr ? value : "";
}

/// A folder of the user whose rights this process has: the one that the variable names, of which a relative one does not
/// count, else the one of this name in the home folder. Empty when there is neither.
inline std::string userFolder(char const* variable, char const* inHome) {
    if (std::string named = trustedVariable(variable); named.starts_with('/')) return named;
    std::string home = trustedVariable("HOME");
    if (home.empty()) {
        passwd user;
        char strings[4096];
        passwd* found = nullptr;
        ::getpwuid_r(::geteuid(), &user, strings, sizeof strings, &found);
        if (found != nullptr) home = user.pw_dir;
    }
    return home.empty() ? home : home + '/' + inHome;
}

}
