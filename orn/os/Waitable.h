/// Things that a thread can wait for: auto-reset events and worker threads. On Windows a HANDLE is the system's own;
/// elsewhere it is an object of the seam with the same rules.
#pragma once

#include "orn/os/Types.h"

namespace ORN::os {

inline constexpr DWORD waitObject = 0;           ///< the wait ended because what was waited for is signalled
inline constexpr DWORD waitTimedOut = 258;       ///< or because the time was over
inline constexpr DWORD waitFailed = 0xFFFFFFFF;  ///< or because there is nothing to wait for; see lastError()
inline constexpr DWORD waitForever = 0xFFFFFFFF;
inline constexpr DWORD threadStillActive = 259;

/// An event, not signalled; a wait that it ends takes the signal back. Null when the system refuses.
HANDLE createEvent() noexcept;
bool signalEvent(HANDLE event) noexcept;

/// Gives back one handle. Whoever waits on the object, or has a further handle to it, is not disturbed; a thread runs on.
void closeHandle(HANDLE handle) noexcept;

/// Waits at most `timeout` milliseconds, by a clock that nobody sets.
DWORD waitFor(HANDLE handle, DWORD timeout) noexcept;

/// Waits without a time limit, and lets messages that other threads send to this one's windows be delivered meanwhile.
/// What is posted stays where it is.
DWORD waitDeliveringSentMessages(HANDLE handle) noexcept;

/// Starts a thread that runs main(argument) and ends with its result as exit code. The caller closes the handle; null
/// when the system refuses.
HANDLE startThread(unsigned int (*main)(void*), void* argument, unsigned int stackBytes) noexcept;

/// False when the handle names no thread. A thread that is still running has the code threadStillActive.
bool threadExitCode(HANDLE thread, DWORD& code) noexcept;

/// Whether the handle is of the thread that calls.
bool isCallingThread(HANDLE thread) noexcept;

/// Ends the calling thread at once, with an exit code.
[[noreturn]] void exitThread(DWORD code);

/// A thread's priority in Windows' steps, -2 lowest and 2 highest, as near as the process may set it; no boosts.
void setThreadPriority(HANDLE thread, int priority) noexcept;

/// Gives a thread the calling thread's priority, as near as the process may set it.
void lendPriority(HANDLE thread) noexcept;

/// Names a thread for whoever debugs, cut to the length that the system takes; 0xFFFFFFFF is the calling thread.
void nameThread(char const* name, DWORD threadId) noexcept;

/// The number by which the system knows the calling thread.
DWORD currentThreadId() noexcept;

/// COM for many threads, for the calling one; leaveApartment takes back an enterApartment that gave true.
bool enterApartment() noexcept;
void leaveApartment() noexcept;

/// Tells the user something, in a box to be confirmed or, where there is none, on standard error.
void showMessage(wchar_t const* text, wchar_t const* caption) noexcept;

}
