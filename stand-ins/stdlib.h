// What mingw-w64 leaves to its own C++ library.
#pragma once
#include_next <stdlib.h>

extern "C" {
float _strtof_l(char const* text, char** end, _locale_t locale);
long double _strtold_l(char const* text, char** end, _locale_t locale);
}
