#include "orn/text/TextWriter.h"

#include <gtest/gtest.h>
