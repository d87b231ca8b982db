#include "tests/support/ColourSystem.h"

#include <windows.h>

bool joinsLongChains() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr; }
