// What the few operations throw that report by a bare text instead of an exception object.
#pragma once

inline constinit char notImplementedText[] = "Not implemented";
inline constinit char sliceNotImplementedText[] = "Not Implemented";

/// Thrown as char *, so that handlers for char *, char const * and void * all receive it.
// NOLINTNEXTLINE(misc-throw-by-value-catch-by-reference)
[[noreturn]] inline void throwText(char* text) { throw text; }
