/// The process's environment variables.
#pragma once

#include <string>

namespace ORN::os {

/// Empty when there is no such variable. Elsewhere than on Windows names and values are in the multibyte code page.
std::wstring environmentVariable(std::wstring const& name);

}
