/// Every public header of the library.
#pragma once

#include "orn/foundation/Error.h"
#include "orn/geometry/Matrix.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/CharacterTable.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"
#include "orn/text/Numbers.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFile.h"
#include "orn/text/TextLineIterator.h"
#include "orn/threading/CriticalSection.h"
#include "orn/threading/Lock.h"
