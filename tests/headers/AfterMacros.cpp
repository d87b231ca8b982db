// The headers bear a windows.h that defines min and max. The compiler's own headers do not, so they come first.
#include <bits/stdc++.h>
#ifdef _WIN32
#include <windows.h>
#endif

#undef min
#undef max
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))

#include "orn/orn.h"
