/// A scope in which the calling thread works in the user's default locale.
#pragma once

#include "orn/Export.h"

#include <string>

/// Switches one category (LC_ALL, LC_CTYPE, LC_COLLATE, ...) of the calling thread to the user's locale, and back when it
/// ends. Other threads notice nothing; guards nest. Where no such locale is installed the current one stays.
///
/// What the thread set in the category inside the scope is dropped with it. A guard ends on the thread that made it.
class ORN_API AutoLocale {
public:
    explicit AutoLocale(int category);  ///< the category as for setlocale
    ~AutoLocale();
    AutoLocale(AutoLocale const&) = delete;
    AutoLocale& operator=(AutoLocale const&) = delete;

private:
    int category_;
    int mode_;          // the thread's mode before
    std::string name_;  // the category's locale before
};
