/// The Windows names that signatures use, with one meaning on every system: on Windows they repeat the system's own
/// declarations (so that windows.h may come before or after), elsewhere they have the same widths.
///
/// A wide string is a sequence of UTF-16 code units on both systems: where wchar_t has 32 bits, each element still holds
/// one code unit.
#pragma once

#include <cstdint>

#if defined(_WIN32)

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

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using HRESULT = std::int32_t;
using COLORREF = std::uint32_t;
using HANDLE = void*;
using HWND = struct HWND__*;
using HKEY = struct HKEY__*;
using HINSTANCE = struct HINSTANCE__*;
using HPROFILE = HANDLE;
using HTRANSFORM = HANDLE;
struct IUnknown;
struct IDataObject;

struct RGBQUAD {
    BYTE rgbBlue, rgbGreen, rgbRed, rgbReserved;
};

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth, biHeight;
    WORD biPlanes, biBitCount;
    DWORD biCompression, biSizeImage;
    LONG biXPelsPerMeter, biYPelsPerMeter;
    DWORD biClrUsed, biClrImportant;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

#endif
