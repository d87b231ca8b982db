#include "orn/os/Locale.h"

#include "orn/os/Fault.h"
#include "orn/os/windows/LocaleFormat.h"

#include <windows.h>

#include <locale.h>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <clocale>
#include <cwchar>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#if defined(__MINGW32__) && !defined(_UCRT)
#define ORN_ONE_LOCALE_A_PROCESS 1
#else
#define ORN_ONE_LOCALE_A_PROCESS 0
#endif

namespace ORN::os {

#if ORN_ONE_LOCALE_A_PROCESS

// The older runtime has one locale for the process. This file then keeps each thread's own, and hands it to the
// functions of the runtime that take one.

namespace {

constexpr char const* categoryNames[] = {"LC_ALL", "LC_COLLATE", "LC_CTYPE", "LC_MONETARY", "LC_NUMERIC", "LC_TIME"};
constexpr int categoryCount = 6;
static_assert(LC_ALL == 0 && LC_COLLATE == 1 && LC_CTYPE == 2 && LC_MONETARY == 3 && LC_NUMERIC == 4 && LC_TIME == 5);

constexpr bool isKnown(int category) noexcept { return category >= 0 && category < categoryCount; }

/// The runtime's objects for the few locales that a process ever uses, by their whole names. They are kept until the
/// process ends, because threads that end at the same time cannot free them safely.
class LocaleObjects {
public:
    static _locale_t find(std::string const& name) {
        Lock const lock;
        for (Node const* node = first_; node != nullptr; node = node->next)
            if (node->name == name) return node->object;
        auto node = std::make_unique<Node>(Node{name, _create_locale(LC_ALL, name.c_str()), first_});
        if (node->object == nullptr) return nullptr;
        first_ = node.release();
        return first_->object;
    }

private:
    struct Node {
        std::string name;
        _locale_t object;
        Node* next;
    };

    struct Lock {
        Lock() { AcquireSRWLockExclusive(&lock_); }
        ~Lock() { ReleaseSRWLockExclusive(&lock_); }
        Lock(Lock const&) = delete;
        Lock& operator=(Lock const&) = delete;
    };

    static constinit SRWLOCK lock_;
    static constinit Node* first_;
};

constinit SRWLOCK LocaleObjects::lock_ = SRWLOCK_INIT;
constinit LocaleObjects::Node* LocaleObjects::first_ = nullptr;

/// The locale's name in every category, and the object for the whole.
struct Locale {
    std::string names[categoryCount];
    _locale_t handle = nullptr;

    /// One name for all categories, or the list of them that the runtime reads back.
    std::string whole() const {
        std::string list;
        bool same = true;
        for (int category = LC_COLLATE; category < categoryCount; ++category) {
            same = same && names[category] == names[LC_COLLATE];
            if (!list.empty()) list += ';';
            list.append(categoryNames[category]).append(1, '=').append(names[category]);
        }
        return same ? names[LC_COLLATE] : list;
    }

    void set(int category, std::string_view name) {
        if (category != LC_ALL) {
            names[category] = name;
            return;
        }
        // What whole() has listed, or one name for all.
        for (int each = LC_COLLATE; each < categoryCount; ++each) {
            std::string const key = std::string{categoryNames[each]} + '=';
            std::size_t const at = name.find(key);
            if (at == std::string_view::npos)
                names[each] = name;
            else
                names[each] = name.substr(at + key.size(), name.find(';', at) - at - key.size());
        }
    }
};

/// The calling thread's own locale, or null, in a fibre-local slot of the system. A thread_local object would not do:
/// this compiler's runtime frees the memory of such objects before it runs their destructors.
class ThreadSlot {
public:
    constexpr ThreadSlot() noexcept = default;
    ~ThreadSlot() {
        if (slot_ != none) FlsFree(slot_);  // frees what every thread has there
    }
    ThreadSlot(ThreadSlot const&) = delete;
    ThreadSlot& operator=(ThreadSlot const&) = delete;

    Locale* get() const noexcept {
        DWORD const slot = slot_;
        return slot != none ? static_cast<Locale*>(FlsGetValue(slot)) : nullptr;
    }

    bool set(std::unique_ptr<Locale> locale) noexcept {
        if (slot_ == none && !make()) return false;
        std::unique_ptr<Locale> const before{get()};
        FlsSetValue(slot_, locale.release());
        return true;
    }

private:
    static constexpr DWORD none = FLS_OUT_OF_INDEXES;

    static void WINAPI release(void* locale) noexcept { delete static_cast<Locale*>(locale); }

    bool make() noexcept {
        DWORD const slot = FlsAlloc(release);
        DWORD expected = none;  // where another thread has been faster, its slot stays
        if (slot != none && !slot_.compare_exchange_strong(expected, slot)) FlsFree(slot);
        return slot_ != none;
    }

    std::atomic<DWORD> slot_{none};
};

constinit ThreadSlot threadSlot;

/// The runtime's name of the user's default locale. The runtime knows no locale with the code page UTF-8 or without a
/// code page, which some users have. It maps and compares wide texts the same way with any code page, so 1252 stands
/// in.
std::string userName() {
    auto const part = [](LCTYPE type) {
        char text[128] = "";
        GetLocaleInfoA(LOCALE_USER_DEFAULT, type, text, sizeof text);
        return std::string{text};
    };
    std::string const place = part(LOCALE_SENGLANGUAGE) + '_' + part(LOCALE_SENGCOUNTRY) + '.';
    std::string const own = place + part(LOCALE_IDEFAULTANSICODEPAGE);
    bool const known =
        part(LOCALE_IDEFAULTANSICODEPAGE) != std::to_string(CP_UTF8) && LocaleObjects::find(own) != nullptr;
    return known ? own : place + "1252";
}

bool isPerThread() noexcept { return threadSlot.get() != nullptr; }

/// Finds the object for the names, and makes the locale the thread's own.
bool adopt(std::unique_ptr<Locale> next) {
    next->handle = LocaleObjects::find(next->whole());
    if (next->handle == nullptr) return false;
    return threadSlot.set(std::move(next));
}

}

int threadLocaleMode(int mode) noexcept {
    int const before = isPerThread() ? perThreadLocale : processLocale;
    try {
        if (mode == perThreadLocale && before == processLocale) {
            auto next = std::make_unique<Locale>();
            next->set(LC_ALL, std::setlocale(LC_ALL, nullptr));
            if (ORN_OS_REFUSED("_configthreadlocale") || !adopt(std::move(next))) return -1;
        } else if (mode == processLocale) {
            if (before == perThreadLocale) threadSlot.set(nullptr);
        }
    } catch (std::bad_alloc const&) {
        return -1;
    }
    return before;
}

std::string localeName(int category) {
    if (!isKnown(category)) return {};
    if (!isPerThread()) return std::setlocale(category, nullptr);
    Locale const& own = *threadSlot.get();
    return category == LC_ALL ? own.whole() : own.names[category];
}

bool setLocale(int category, char const* name) noexcept {
    if (!isKnown(category) || ORN_OS_REFUSED("setlocale")) return false;
    if (!isPerThread()) return std::setlocale(category, name) != nullptr;
    try {
        auto next = std::make_unique<Locale>();
        std::copy_n(threadSlot.get()->names, categoryCount, next->names);
        next->set(category, *name != 0 ? std::string{name} : userName());
        return adopt(std::move(next));
    } catch (std::bad_alloc const&) {
        return false;
    }
}

void upperCase(wchar_t* text) noexcept {
    Locale const* const own = threadSlot.get();
    own != nullptr ? _wcsupr_l(text, own->handle) : _wcsupr(text);
}

void lowerCase(wchar_t* text) noexcept {
    Locale const* const own = threadSlot.get();
    own != nullptr ? _wcslwr_l(text, own->handle) : _wcslwr(text);
}

int formatUnits(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept {
    Locale const* const own = threadSlot.get();
    return own != nullptr ? _vsnwprintf_l(buffer, size, format, own->handle, arguments)
                          : _vsnwprintf(buffer, size, format, arguments);
}

int countUnits(wchar_t const* format, std::va_list arguments) noexcept {
    Locale const* const own = threadSlot.get();
    return own != nullptr ? _vscwprintf_l(format, own->handle, arguments) : _vscwprintf(format, arguments);
}

static int compare(wchar_t const* a, wchar_t const* b) noexcept {
    Locale const* const own = threadSlot.get();
    return own != nullptr ? _wcscoll_l(a, b, own->handle) : std::wcscoll(a, b);
}

#else

// The modes have the runtime's own numbers.
int threadLocaleMode(int mode) noexcept {
    return ORN_OS_REFUSED("_configthreadlocale") && mode != 0 ? -1 : _configthreadlocale(mode);
}

std::string localeName(int category) {
    char const* const name = std::setlocale(category, nullptr);
    return name != nullptr ? name : "";
}

bool setLocale(int category, char const* name) noexcept {
    return !ORN_OS_REFUSED("setlocale") && std::setlocale(category, name) != nullptr;
}

void upperCase(wchar_t* text) noexcept { _wcsupr(text); }
void lowerCase(wchar_t* text) noexcept { _wcslwr(text); }

int formatUnits(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept {
    return _vsnwprintf(buffer, size, format, arguments);
}
int countUnits(wchar_t const* format, std::va_list arguments) noexcept { return _vscwprintf(format, arguments); }

static int compare(wchar_t const* a, wchar_t const* b) noexcept { return std::wcscoll(a, b); }

#endif

int collate(wchar_t const* a, wchar_t const* b) noexcept {
    if (ORN_OS_REFUSED("wcscoll")) {
        errno = EINVAL;
        return 1;
    }
    return compare(a, b);
}

}
