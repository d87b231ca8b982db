#include "orn/text/Encoding.h"

#include <gtest/gtest.h>
