// A program that has declared names of Windows as other types gives the library's other names.
#define NO_STRICT
#ifdef _WIN32
#include <windows.h>
#else
typedef unsigned long DWORD;
typedef long LONG;
typedef void* HWND;
typedef void* HKEY;
#define DWORD ORN_DWORD
#define LONG ORN_LONG
#endif
#define HWND ORN_HWND
#define HKEY ORN_HKEY
#define HINSTANCE ORN_HINSTANCE
#include "orn/orn.h"
#undef HWND
#undef HKEY

bool isThere(HKEY root, HWND) { return RegReadKey{static_cast<ORN_HKEY>(root), L""}.valid(); }
