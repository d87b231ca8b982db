/// The upper case in which names are compared without case, as Windows does it for the names of its objects.
#pragma once

namespace ORN::os {

/// One UTF-16 unit to one unit, the same in every locale: Unicode's simple upper case where its lower case is the unit
/// again. So ß, the dotless i, the micro sign and the last sigma of a word stay as they are, and surrogates too.
char16_t upperCaseOfName(char16_t unit) noexcept;

}
