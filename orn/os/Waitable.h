/// Things that a thread can wait for: auto-reset events and worker threads. On Windows a HANDLE is the system's own;
/// elsewhere it is an object of the seam with the same rules.
#pragma once

#include "orn/os/Status.h"
#include "orn/os/Types.h"

namespace ORN::os {

/// What threadExitCode() gives for a thread that still runs.
inline constexpr DWORD threadStillActive = 259;

/// The number that stands for the calling thread in nameThread().
inline constexpr DWORD callingThread = 0xFFFFFFFF;

/// Creates an event that is not signalled. A wait that the event ends takes the signal back. Null when the system refuses.
HANDLE createEvent() noexcept;
bool signalEvent(HANDLE event) noexcept;

/// Gives back one handle. Threads that wait on the object, and other handles to it, are not disturbed; a thread runs on.
void closeHandle(HANDLE handle) noexcept;

/// Waits at most `timeout` milliseconds, on a clock that nobody sets. The result is one of the three in Status.h.
DWORD waitFor(HANDLE handle, DWORD timeout) noexcept;

/// Waits without a time limit. Meanwhile messages that other threads send to windows of this thread are delivered; posted
/// messages stay in the queue.
DWORD waitDeliveringSentMessages(HANDLE handle) noexcept;

/// Starts a thread that runs main(argument) and takes its result as exit code. The caller closes the handle. Null when the
/// system refuses.
HANDLE startThread(unsigned int (*main)(void*), void* argument, unsigned int stackBytes) noexcept;

/// False when the handle names no thread.
bool threadExitCode(HANDLE thread, DWORD& code) noexcept;

/// Ends the calling thread at once, with an exit code.
[[noreturn]] void exitThread(DWORD code);

/// Sets a thread's priority in Windows' steps, -2 lowest and 2 highest, as near as the process may; no boosts.
void setThreadPriority(HANDLE thread, int priority) noexcept;

/// Gives a thread the calling thread's priority, as near as the process may set it.
void lendPriority(HANDLE thread) noexcept;

/// Names a thread for debuggers. The system may cut the name.
void nameThread(char const* name, DWORD threadId) noexcept;

/// The number by which the system knows the calling thread.
DWORD currentThreadId() noexcept;

/// Joins the calling thread to COM's multithreaded apartment. leaveApartment undoes an enterApartment that returned true.
bool enterApartment() noexcept;
void leaveApartment() noexcept;

/// Shows the user a text: in a message box where the system has one, otherwise on standard error.
void showMessage(wchar_t const* text, wchar_t const* caption) noexcept;

}
