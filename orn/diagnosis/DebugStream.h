/// The process's diagnostic output: one wide stream that writes UTF-8 to the file that the environment names, or nothing.
///
///   ORNDEBUGPRINTTEMPLATE   A file name with a `#`. The first number (0, 1, 2, …) that gives the name of no existing file
///                           replaces the `#`, and that file is made. A name without a `#` counts as not set.
///   ORNDEBUGPRINTFILE       Counts when the first variable is not set: a file that is made, or appended to in its own
///                           encoding.
///
/// The environment is read once, when the stream is first used. The stream and its file live until the process ends. Text
/// reaches the file when a buffer is full and when the stream is flushed; text that is not flushed when the process ends is
/// lost. Characters are written one by one, so that CR and LF each end a line. A leading surrogate waits for its partner; a
/// surrogate without a partner becomes U+FFFD.
///
/// A diagnostic does not harm the program that writes it: insertions throw no failures of the file, and the stream stays
/// good. When the file takes no more text, the next stream() or flush() throws the failure as OrnError, once; while another
/// exception is being thrown, stream() throws nothing and the failure waits. The text before the failure is kept. The rest
/// of that line and the lines after it are dropped until the file takes text again; then a line in the file says how many
/// characters were dropped.
#pragma once

#include "orn/Export.h"
#include "orn/diagnosis/TypedPointer.h"
#include "orn/foundation/DebuggingLevel.h"
#include "orn/os/Types.h"

#include <iosfwd>
#include <string>

namespace DebugStream {

/// The stream. The first call makes the file. When that fails, it throws OrnError, and later calls give a stream that writes
/// nothing, because the file is not tried again. Also throws OrnError for an earlier write that failed. Hold lock()
/// exclusively while you write.
ORN_API std::wostream& stream();

/// Whether there is a file. The first call takes lock() shared to find out: do not hold it exclusively.
ORN_API bool isActive();
ORN_API bool testActive();  ///< Finds out anew, for isActive() too. Hold lock().

/// Hands all text to the system; takes lock() exclusively. When it returns, the text is in the file and stays there even if
/// the process is killed. Throws OrnError once for each failure.
ORN_API void flush();

/// The lock (see ReadWriteLock) of the stream. A writer holds it exclusively:
///
///     if (DebugStream::isActive()) {
///         ExclusiveLock const guard{DebugStream::lock()};
///         DebugStream::stream() << L"...\n";
///     }
[[nodiscard]] ORN_API LONG volatile& lock() noexcept;

ORN_API std::wstring decimal(int n);      ///< Decimal digits, with a sign if negative.
ORN_API std::wstring hexadecimal(int n);  ///< Lower-case digits of the 32-bit two's complement, without a prefix.

/// Stands in an insertion for the system's number of the calling thread.
struct GCTID {};

ORN_API std::wostream& operator<<(std::wostream& stream, GCTID);  ///< Writes that number in decimal digits.

}
