#include "orn/os/Com.h"

#include <cstdlib>
#include <cwchar>

namespace ORN::os {

BSTR allocString(wchar_t const* text) {
    std::size_t const units = std::wcslen(text) + 1;
    auto* const copy = static_cast<BSTR>(std::malloc(units * sizeof(wchar_t)));
    if (copy != nullptr) std::wmemcpy(copy, text, units);
    return copy;
}

void freeString(BSTR string) noexcept { std::free(string); }

}
