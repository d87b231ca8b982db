#include "orn/text/AutoLocale.h"

#include "orn/os/Locale.h"

namespace os = ORN::os;

AutoLocale::AutoLocale(int category)
    : category_{category}, mode_{os::threadLocaleMode(0)}, name_{os::localeName(category)} {
    // Without a locale of its own, the thread would change the locale of the whole process.
    if (os::threadLocaleMode(os::perThreadLocale) != -1) os::setLocale(category, "");
}

AutoLocale::~AutoLocale() {
    // An unknown category has no name, and to the system the empty name means the user's locale.
    if (!name_.empty() && os::threadLocaleMode(0) == os::perThreadLocale) os::setLocale(category_, name_.c_str());
    os::threadLocaleMode(mode_);
}
