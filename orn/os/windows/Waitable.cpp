#include "orn/os/Waitable.h"

#include "orn/os/Fault.h"

#include <objbase.h>
#include <process.h>
#include <windows.h>

#include <exception>

namespace ORN::os {

HANDLE createEvent() noexcept {
    if (ORN_OS_REFUSED("CreateEvent")) return nullptr;
    // The first FALSE makes the event reset itself when it ends a wait; the second leaves it unsignalled.
    return CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

bool signalEvent(HANDLE event) noexcept { return SetEvent(event) != 0; }

void closeHandle(HANDLE handle) noexcept { CloseHandle(handle); }

DWORD waitFor(HANDLE handle, DWORD timeout) noexcept { return WaitForSingleObject(handle, timeout); }

DWORD waitDeliveringSentMessages(HANDLE handle) noexcept {
    // The wait returns only for messages that came after this thread last looked at its queue. So each turn looks
    // first, and no message is left behind.
    for (;;) {
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // delivers what was sent
        // One above the object: a message was sent while this thread waited.
        DWORD const result = MsgWaitForMultipleObjects(1, &handle, FALSE, INFINITE, QS_SENDMESSAGE);
        if (result != WAIT_OBJECT_0 + 1) return result;
    }
}

HANDLE startThread(unsigned int (*main)(void*), void* argument, unsigned int stackBytes) noexcept {
    if (ORN_OS_REFUSED("_beginthreadex")) return nullptr;
    // The size is what the system commits at first. The stack may grow beyond it.
    return reinterpret_cast<HANDLE>(_beginthreadex(nullptr, stackBytes, main, argument, 0, nullptr));
}

bool threadExitCode(HANDLE thread, DWORD& code) noexcept { return GetExitCodeThread(thread, &code) != 0; }

void exitThread(DWORD code) {
    _endthreadex(code);
    std::terminate();  // never reached: the declaration above does not tell
}

void setThreadPriority(HANDLE thread, int priority) noexcept {
    SetThreadPriority(thread, priority);
    SetThreadPriorityBoost(thread, TRUE);  // TRUE switches the boosts off
}

void lendPriority(HANDLE thread) noexcept { SetThreadPriority(thread, GetThreadPriority(GetCurrentThread())); }

namespace {

// Debuggers take a thread's name from an exception with this code. Its arguments are the mark 0x1000, the name, the
// thread's number (all bits set for the calling thread), and flags that are always 0.
DWORD const nameException = 0x406D1388;

// Without a debugger nobody else handles the exception, and it would end the process.
LONG CALLBACK swallowName(EXCEPTION_POINTERS* exception) {
    return exception->ExceptionRecord->ExceptionCode == nameException ? EXCEPTION_CONTINUE_EXECUTION
                                                                      : EXCEPTION_CONTINUE_SEARCH;
}

}

void nameThread(char const* name, DWORD threadId) noexcept {
    ULONG_PTR const arguments[4] = {0x1000, reinterpret_cast<ULONG_PTR>(name), threadId, 0};
    void* const handler = AddVectoredExceptionHandler(0, swallowName);  // a debugger sees it first
    if (handler == nullptr) return;
    RaiseException(nameException, 0, 4, arguments);
    RemoveVectoredExceptionHandler(handler);
}

DWORD currentThreadId() noexcept { return GetCurrentThreadId(); }

// S_FALSE, for a thread that is in the apartment already, counts too: it also wants its CoUninitialize.
bool enterApartment() noexcept { return SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)); }
void leaveApartment() noexcept { CoUninitialize(); }

void showMessage(wchar_t const* text, wchar_t const* caption) noexcept {
    if (ORN_OS_REFUSED("MessageBox")) return;
    MessageBoxW(nullptr, text, caption, MB_ICONINFORMATION);
}

}
