/// The process's diagnostic output: one wide stream that writes UTF-8 to the file that the environment names, or nothing.
///
///   ORNDEBUGPRINTTEMPLATE   a file name with a `#`, which becomes the first number (0, 1, 2, …) that gives a name nobody
///                           bears; the file is made. Without a `#` it counts as not set.
///   ORNDEBUGPRINTFILE       otherwise: a file that is made, or appended to in the encoding that it has.
///
/// Read once, when the stream is first used. The stream and its file live until the process ends, and what is written
/// reaches the file when a buffer is full and when the stream is flushed; what is not flushed when the process ends is lost.
/// Characters are written one by one, so that CR and LF each end a line; a leading surrogate waits for its partner, and one
/// without a partner becomes U+FFFD.
///
/// A diagnostic does not harm the program that writes it: insertions throw nothing of their own, and the stream stays good.
/// When the file takes no more text, the next stream() or flush() throws that, once, as OrnError (while another exception is
/// on its way it waits). What was written before is kept; the rest of the line and later ones are dropped until the file
/// takes text again, and then a line there says how many characters were.
#pragma once

#include "orn/Export.h"
#include "orn/diagnosis/TypedPointer.h"
#include "orn/foundation/DebuggingLevel.h"
#include "orn/os/Types.h"

#include <iosfwd>
#include <string>

namespace DebugStream {

/// The stream. The first call makes the file, and throws OrnError when it cannot; nothing is tried again, and the later
/// calls give a stream that writes nothing. Throws OrnError, too, for a write that failed before. Hold lock() exclusively
/// while you write.
ORN_API std::wostream& stream();

/// Whether a file is being written. The first call finds out, under lock() shared: do not hold it exclusively.
ORN_API bool isActive();
ORN_API bool testActive();  ///< finds out, and remembers; hold lock()

/// Hands everything to the system, under lock() exclusively. When it returns, what was written is in the file, and stays
/// there whatever becomes of the process; unless it throws OrnError, once for each failure.
ORN_API void flush();

/// The lock (see ReadWriteLock) of the stream. Who writes holds it exclusively:
///
///     if (DebugStream::isActive()) {
///         ExclusiveLock const guard{DebugStream::lock()};
///         DebugStream::stream() << L"...\n";
///     }
[[nodiscard]] ORN_API LONG volatile& lock() noexcept;

ORN_API std::wstring decimal(int n);      ///< with a sign if negative
ORN_API std::wstring hexadecimal(int n);  ///< lower-case digits of the 32-bit two's complement, without a prefix

/// Inserted into a stream, the number by which the system knows the calling thread, in decimal.
struct GCTID {};

ORN_API std::wostream& operator<<(std::wostream& stream, GCTID);  ///< writes the number

}
