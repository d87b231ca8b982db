/// The Windows names that signatures use, with one meaning on every system: on Windows they repeat the system's own
/// declarations (so that windows.h may come before or after), elsewhere they have the same widths.
///
/// Where other declarations have these names for other types, as a library that has a DWORD of its own or a windows.h under
/// NO_STRICT, ours get other names while they are included; they are no part of any exported name but for BITMAPINFO:
///
///     #define DWORD ORN_DWORD    // under NO_STRICT: HWND, HKEY and HINSTANCE
///     #include "orn/orn.h"
///     #undef DWORD
///
/// A wide string is a sequence of UTF-16 code units on both systems: where wchar_t has 32 bits, each element still holds
/// one code unit.
#pragma once

#include <cstdint>

#if defined(_WIN32)

#if defined(NO_STRICT) && !defined(STRICT) && defined(_WINDEF_) && !defined(HWND)
#error \
    "windows.h has no types for handles under NO_STRICT: rename HWND, HKEY and HINSTANCE while orn's headers are included"
#endif

typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef unsigned long DWORD;
typedef long LONG;
typedef long HRESULT;
typedef unsigned long COLORREF;
typedef void* HANDLE;
struct HWND__;
typedef struct HWND__* HWND;
struct HKEY__;
typedef struct HKEY__* HKEY;
struct HINSTANCE__;
typedef struct HINSTANCE__* HINSTANCE;
typedef HANDLE HPROFILE;
typedef HANDLE HTRANSFORM;
struct tagBITMAPINFO;
typedef struct tagBITMAPINFO BITMAPINFO;
struct IUnknown;
struct IDataObject;

#else

/// 8, 16, 32 bits; unsigned but for LONG.
/// @{
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
/// @}

using HRESULT = std::int32_t;    ///< the result of a COM call; negative: a failure
using COLORREF = std::uint32_t;  ///< 0x00BBGGRR
/// What the system knows an object by: event or thread, window, registry key, library, colour profile and transform.
/// @{
using HANDLE = void*;
using HWND = struct HWND__*;
using HKEY = struct HKEY__*;
using HINSTANCE = struct HINSTANCE__*;
using HPROFILE = HANDLE;
using HTRANSFORM = HANDLE;
/// @}

struct IUnknown;
struct IDataObject;

/// The roots of the registry.
/// @{
#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<LONG>(0x80000000))))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<LONG>(0x80000001))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<LONG>(0x80000002))))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<LONG>(0x80000003))))
/// @}
/// Rights that choose one of Windows' views of the registry; elsewhere they mean nothing.
/// @{
#define KEY_WOW64_64KEY 0x0100
#define KEY_WOW64_32KEY 0x0200
/// @}

/// An entry of a bitmap's colour table.
struct RGBQUAD {
    /// 0 to 255.
    /// @{
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    /// @}
    BYTE rgbReserved;  ///< 0
};

/// What a bitmap's pixels are.
struct BITMAPINFOHEADER {
    DWORD biSize;          ///< 40, the size of this header
    LONG biWidth;          ///< in pixels
    LONG biHeight;         ///< in pixels; negative: rows from the top down
    WORD biPlanes;         ///< 1
    WORD biBitCount;       ///< bits a pixel
    DWORD biCompression;   ///< 0: none
    DWORD biSizeImage;     ///< bytes of all rows, or 0
    LONG biXPelsPerMeter;  ///< resolution, or 0
    LONG biYPelsPerMeter;  ///< resolution, or 0
    DWORD biClrUsed;       ///< entries of the colour table; 0: as many as the bit count allows
    DWORD biClrImportant;  ///< how many of them matter; 0: all
};

/// The header and the first entry of the colour table that follows it.
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;  ///< the header
    RGBQUAD bmiColors[1];        ///< really biClrUsed
};

#endif
