#include "orn/text/AutoLocale.h"

#include "orn/os/Locale.h"

namespace os = ORN::os;

AutoLocale::AutoLocale(int category)
    : category_{category}, mode_{os::threadLocaleMode(0)}, name_{os::localeName(category)} {
    // A thread that cannot have a locale of its own must not change that of all the others.
    if (os::threadLocaleMode(os::perThreadLocale) != -1) os::setLocale(category, "");
}

AutoLocale::~AutoLocale() {
    // An empty name would mean the user's locale once more.
    if (!name_.empty() && os::threadLocaleMode(0) == os::perThreadLocale) os::setLocale(category_, name_.c_str());
    os::threadLocaleMode(mode_);
}
