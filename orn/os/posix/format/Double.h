/// Floating-point numbers in a format.
#pragma once

#include "orn/os/posix/format/Sink.h"

namespace ORN::os::format {

/// False when there was no memory for a very long one.
bool putDouble(Sink& sink, FormatConversion const& conversion, double value) noexcept;

}
