#include "tests/support/ColourSystem.h"

bool joinsLongChains() { return true; }
