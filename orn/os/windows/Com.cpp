#include "orn/os/Com.h"

#include <oleauto.h>
#include <windows.h>

namespace ORN::os {

// Unlike SysAllocString, this call keeps zeros inside the text.
BSTR allocString(std::wstring_view text) { return SysAllocStringLen(text.data(), static_cast<UINT>(text.size())); }
std::size_t stringLength(BSTR string) noexcept { return SysStringLen(string); }
void freeString(BSTR string) noexcept { SysFreeString(string); }

}
