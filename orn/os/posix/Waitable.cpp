#include "orn/os/Waitable.h"

#include "orn/os/CodePage.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/posix/Futex.h"

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <new>

namespace ORN::os {

namespace {

/// The object of a HANDLE. The wait that an event ends takes the signal; a thread that has ended stays signalled. Each
/// handle holds a reference, and so does a running thread.
struct Waitable {
    std::atomic<std::uint32_t> signalled{0};
    std::atomic<std::uint32_t> waiting{0};
    std::atomic<int> references{1};
    bool const isThread;

    pthread_t thread{};
    std::atomic<pid_t> number{0};
    std::atomic<DWORD> exitCode{threadStillActive};
    unsigned int (*main)(void*) = nullptr;
    void* argument = nullptr;

    explicit Waitable(bool ofThread) noexcept : isThread{ofThread} {}

    void signal() noexcept {
        if (signalled.exchange(1) != 0) return;  // the earlier signal has woken a thread already
        if (waiting.load() != 0) futexWake(signalled, isThread ? INT_MAX : 1);
    }

    bool take() noexcept {
        if (isThread) return signalled.load() != 0;
        std::uint32_t one = 1;
        return signalled.compare_exchange_strong(one, 0);
    }

    void drop() noexcept {
        if (references.fetch_sub(1) == 1) delete this;
    }
};

Waitable* waitable(HANDLE handle) noexcept { return static_cast<Waitable*>(handle); }

Waitable* threadOf(HANDLE handle) noexcept {
    Waitable* const object = waitable(handle);
    if (object != nullptr && object->isThread) return object;
    setLastError(errorInvalidHandle);
    return nullptr;
}

constinit thread_local Waitable* ownThread = nullptr;

/// Marks the thread as ended on every way out, also that of exitThread.
struct ThreadEnd {
    Waitable* thread;
    ~ThreadEnd() {
        DWORD running = threadStillActive;
        // A thread that another one has cancelled has stored no code; after exitThread the code is there already.
        thread->exitCode.compare_exchange_strong(running, 0);
        ownThread = nullptr;
        thread->signal();
        thread->drop();
    }
};

void* runThread(void* object) {
    Waitable* const thread = waitable(object);
    ThreadEnd const end{thread};
    ownThread = thread;
    thread->number.store(static_cast<pid_t>(syscall(SYS_gettid)));
    thread->exitCode.store(thread->main(thread->argument));
    return nullptr;
}

// The kernel's nice values of the priorities -2 to 2. Most processes may not raise a thread's priority again, so
// lending it priority does nothing. The lowest must still make progress on a busy machine, for a thread that waits for
// its end.
constexpr int niceValues[] = {10, 5, 0, -5, -10};

void setNice(pid_t number, int nice) noexcept {
    // On Linux a thread's number stands for that thread alone, although POSIX means a whole process.
    if (number != 0) setpriority(PRIO_PROCESS, static_cast<id_t>(number), nice);
}

pid_t numberOf(Waitable const& thread) noexcept {
    // A thread that was started a moment ago may not have stored its number yet.
    pid_t number = 0;
    while ((number = thread.number.load()) == 0 && thread.exitCode.load() == threadStillActive) sched_yield();
    return thread.exitCode.load() == threadStillActive ? number : 0;
}

}

HANDLE createEvent() noexcept {
    if (ORN_OS_REFUSED("CreateEvent")) return nullptr;
    auto* const event = new (std::nothrow) Waitable{false};
    if (event == nullptr) setLastError(errorNotEnoughMemory);
    return event;
}

bool signalEvent(HANDLE event) noexcept {
    if (event == nullptr || waitable(event)->isThread) {
        setLastError(errorInvalidHandle);
        return false;
    }
    waitable(event)->signal();
    return true;
}

void closeHandle(HANDLE handle) noexcept {
    Waitable* const object = waitable(handle);
    if (object == nullptr) return;
    if (object->isThread) {
        // After this a thread that has ended runs no instruction any more, so its code may be unloaded.
        if (object->signalled.load() != 0 && object != ownThread)
            pthread_join(object->thread, nullptr);
        else
            pthread_detach(object->thread);
    }
    object->drop();
}

DWORD waitFor(HANDLE handle, DWORD timeout) noexcept {
    Waitable* const object = waitable(handle);
    if (object == nullptr) {
        setLastError(errorInvalidHandle);
        return waitFailed;
    }
    if (object->take()) return waitObject;

    // A signal that comes after the count sees that a thread waits; one that came before is taken by the next look.
    Deadline const deadline{timeout};
    object->waiting.fetch_add(1);
    DWORD result = waitObject;
    while (!object->take()) {
        if (futexWait(object->signalled, 0, deadline) == ETIMEDOUT) {
            result = object->take() ? waitObject : waitTimedOut;
            break;
        }
    }
    object->waiting.fetch_sub(1);
    return result;
}

// This system knows no messages that a waiting thread would have to take.
DWORD waitDeliveringSentMessages(HANDLE handle) noexcept { return waitFor(handle, waitForever); }

HANDLE startThread(unsigned int (*main)(void*), void* argument, unsigned int stackBytes) noexcept {
    if (ORN_OS_REFUSED("_beginthreadex")) return nullptr;
    auto* const thread = new (std::nothrow) Waitable{true};
    if (thread == nullptr) {
        setLastError(errorNotEnoughMemory);
        return nullptr;
    }
    thread->main = main;
    thread->argument = argument;
    thread->references.store(2);  // the handle's and the running thread's

    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    // The C library refuses stacks below its least size.
    pthread_attr_setstacksize(&attributes, std::max<std::size_t>(stackBytes, PTHREAD_STACK_MIN));
    int const error = pthread_create(&thread->thread, &attributes, runThread, thread);
    pthread_attr_destroy(&attributes);
    if (error == 0) return thread;
    delete thread;
    setLastError(errorNotEnoughMemory);
    return nullptr;
}

bool threadExitCode(HANDLE handle, DWORD& code) noexcept {
    Waitable const* const thread = threadOf(handle);
    if (thread == nullptr) return false;
    // The code may be stored a moment before the thread has ended.
    code = thread->signalled.load() != 0 ? thread->exitCode.load() : threadStillActive;
    return true;
}

void exitThread(DWORD code) {
    // The thread's stack is unwound, so that ThreadEnd signals the end.
    if (ownThread != nullptr) ownThread->exitCode.store(code);
    pthread_exit(nullptr);
}

void setThreadPriority(HANDLE handle, int priority) noexcept {
    if (Waitable const* const thread = threadOf(handle))
        setNice(numberOf(*thread), niceValues[std::clamp(priority, -2, 2) + 2]);
}

void lendPriority(HANDLE handle) noexcept {
    if (Waitable const* const thread = threadOf(handle))
        setNice(numberOf(*thread), getpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid))));
}

void nameThread(char const* name, DWORD threadId) noexcept {
    // The kernel keeps so many bytes of a name, and a zero. Its file names a thread by number; pthread_setname_np would
    // need the pthread_t.
    std::size_t const longest = 15;
    char path[64];
    long const number = threadId == callingThread ? syscall(SYS_gettid) : static_cast<long>(threadId);
    std::snprintf(path, sizeof path, "/proc/self/task/%ld/comm", number);
    int const file = open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    [[maybe_unused]] ssize_t const written = write(file, name, strnlen(name, longest));
    close(file);
}

DWORD currentThreadId() noexcept { return static_cast<DWORD>(syscall(SYS_gettid)); }

bool enterApartment() noexcept { return false; }
void leaveApartment() noexcept {}

void showMessage(wchar_t const* text, wchar_t const* caption) noexcept {
    if (ORN_OS_REFUSED("MessageBox")) return;
    auto const put = [](wchar_t const* wide) {
        char bytes[512];
        // A text that does not fit fails to convert, and is left out whole.
        int const length = wideToMultibyte(wide, static_cast<int>(wcslen(wide)), bytes, sizeof bytes);
        std::fwrite(bytes, 1, static_cast<std::size_t>(length), stderr);
    };
    put(caption);
    std::fputs(": ", stderr);
    put(text);
    std::fputs("\n", stderr);
}

}
