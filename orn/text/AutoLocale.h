/// A scope in which the calling thread works in the user's default locale.
#pragma once

#include "orn/Export.h"

#include <string>

/// Switches one category (LC_ALL, LC_CTYPE, LC_COLLATE, ...) of the calling thread to the user's locale, and back at
/// the end of the scope. Other threads keep their locale, and guards may nest. When the system lacks the user's locale,
/// the current one stays.
///
/// These functions obey it: uppercase, lowercase, collateStrings, QuarkCollatesLess, analyzeFileType and, for
/// LC_NUMERIC, stringPrintf with its decimal point. The program's own calls of the C runtime obey it as well, but not
/// with the older runtime of Windows, which has one locale for the process. Numbers, CSV and the multibyte code page do
/// not depend on it.
///
/// The end of the scope undoes what the thread has set in the category meanwhile. It puts a locale object that the
/// program had set (uselocale) back in place, so that object must live as long as the guard. A guard must end on the
/// thread that made it. One scope costs ten to twenty microseconds, and with LC_ALL ten times that.
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
