// mingw-w64's headers, read by a compiler that has Microsoft's keywords and GNU's attributes, too.
#pragma once
#include_next <_mingw.h>

#undef __attribute__

// Written behind declarations, where this compiler does not take the other spelling.
#undef __MINGW_ATTRIB_DEPRECATED
#undef __MINGW_ATTRIB_DEPRECATED_UCRT
#undef __MINGW_ATTRIB_NORETURN
#undef __MINGW_NOTHROW
#define __MINGW_ATTRIB_DEPRECATED
#define __MINGW_ATTRIB_DEPRECATED_UCRT
#define __MINGW_ATTRIB_NORETURN
#define __MINGW_NOTHROW
