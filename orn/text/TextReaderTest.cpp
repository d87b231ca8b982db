#include "orn/text/TextReader.h"

#include <gtest/gtest.h>
