#include "orn/text/Printf.h"

#include <gtest/gtest.h>
