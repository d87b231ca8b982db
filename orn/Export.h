/// ORN_API marks what the library exports; everything else is hidden.
#pragma once

/// Before a declaration: the library exports it.
#if defined(_WIN32)
#if defined(ORN_BUILDING)
#define ORN_API __declspec(dllexport)
#else
#define ORN_API __declspec(dllimport)
#endif
#else
#define ORN_API __attribute__((visibility("default")))
#endif
