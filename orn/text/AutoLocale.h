/// A scope in which the calling thread works in the user's default locale.
#pragma once

#include "orn/Export.h"

#include <string>

/// Switches one category (LC_ALL, LC_CTYPE, LC_COLLATE, ...) of the calling thread to the user's locale, and back when it
/// ends. Other threads notice nothing; guards nest. Where no such locale is installed the current one stays.
///
/// What follows: uppercase, lowercase, collateStrings, QuarkCollatesLess, analyzeFileType and, for LC_NUMERIC, the decimal
/// point of stringPrintf; elsewhere than under the older runtime of Windows, which has one locale a process, also the
/// program's own calls of the C runtime. Numbers and CSV never do, nor the multibyte code page.
///
/// What the thread set in the category inside the scope is dropped with it; a locale object that the program had set
/// (uselocale) is in place again, and must live as long as the guard. A guard ends on the thread that made it. One scope
/// costs ten to twenty microseconds, with LC_ALL ten times that.
class ORN_API AutoLocale {
public:
    [[nodiscard]] explicit AutoLocale(int category);  ///< the category as for setlocale
    ~AutoLocale();
    AutoLocale(AutoLocale const&) = delete;
    AutoLocale& operator=(AutoLocale const&) = delete;

private:
    int category_;
    int mode_;          // the thread's mode before
    std::string name_;  // the category's locale before
};
