#include "orn/os/Com.h"

#include <windows.h>
#include <oleauto.h>

namespace ORN::os {

BSTR allocString(wchar_t const* text) { return SysAllocString(text); }
void freeString(BSTR string) noexcept { SysFreeString(string); }

}
