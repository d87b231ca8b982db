/// Finds the folders for the files of the user.
#pragma once

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace ORN::os {

/// The value of an environment variable. Empty in a program that has more rights than its caller, because the caller
/// could make it write to any file.
inline std::string trustedVariable(char const* name) {
    char const* const value = ::secure_getenv(name);
    return value != nullptr ? value : "";
}

/// A folder of the user whose rights this process has. It is the one that the variable names, if that is an absolute path;
/// otherwise the one called `inHome` in the home folder. Empty when there is no home folder either.
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
