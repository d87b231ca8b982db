#include "orn/os/Locale.h"

#include "orn/os/Fault.h"
#include "orn/os/Scratch.h"
#include "orn/unicode/CodePoints.h"

#include <langinfo.h>
#include <locale.h>
#include <pthread.h>
#include <wctype.h>

#include <cerrno>
#include <cstring>
#include <cwchar>
#include <utility>

namespace ORN::os {

namespace {

/// Frees the locale that a thread still has of its own when it ends. A destructor of a thread-local object would keep
/// the library from being unloaded; a key's does not, and goes with the library.
class ThreadEnd {
public:
    ThreadEnd() noexcept : made_{pthread_key_create(&key_, end) == 0} {}
    ~ThreadEnd() {
        if (std::exchange(made_, false)) pthread_key_delete(key_);
    }
    ThreadEnd(ThreadEnd const&) = delete;
    ThreadEnd& operator=(ThreadEnd const&) = delete;

    /// Remembers the locale to free; null for none. Does nothing before this object is built, and after its
    /// destruction.
    void frees(locale_t own) noexcept {
        if (made_) pthread_setspecific(key_, own);
    }

private:
    static void end(void* own) {
        uselocale(LC_GLOBAL_LOCALE);
        freelocale(static_cast<locale_t>(own));
    }

    pthread_key_t key_;
    bool made_;
};

ThreadEnd threadEnd;

// Locale objects of a thread.
constinit thread_local locale_t ownLocale = nullptr;      // made here, and in use
constinit thread_local locale_t foreignLocale = nullptr;  // set by the program, and replaced by ownLocale

/// Replaces the thread's own locale, and frees it.
void use(locale_t next) noexcept {
    // The C library must not use a locale that has been freed, so the next one comes first.
    uselocale(next);
    threadEnd.frees(nullptr);
    if (ownLocale != locale_t{}) freelocale(ownLocale);
    ownLocale = nullptr;
}

bool isPerThread() noexcept { return uselocale(locale_t{}) != LC_GLOBAL_LOCALE; }

struct Category {
    int number, mask;
    char const* name;
};

// The order in which the C library lists them in the name of a mixed locale.
constexpr Category categories[] = {
    {LC_CTYPE, LC_CTYPE_MASK, "LC_CTYPE"},
    {LC_NUMERIC, LC_NUMERIC_MASK, "LC_NUMERIC"},
    {LC_TIME, LC_TIME_MASK, "LC_TIME"},
    {LC_COLLATE, LC_COLLATE_MASK, "LC_COLLATE"},
    {LC_MONETARY, LC_MONETARY_MASK, "LC_MONETARY"},
    {LC_MESSAGES, LC_MESSAGES_MASK, "LC_MESSAGES"},
    {LC_PAPER, LC_PAPER_MASK, "LC_PAPER"},
    {LC_NAME, LC_NAME_MASK, "LC_NAME"},
    {LC_ADDRESS, LC_ADDRESS_MASK, "LC_ADDRESS"},
    {LC_TELEPHONE, LC_TELEPHONE_MASK, "LC_TELEPHONE"},
    {LC_MEASUREMENT, LC_MEASUREMENT_MASK, "LC_MEASUREMENT"},
    {LC_IDENTIFICATION, LC_IDENTIFICATION_MASK, "LC_IDENTIFICATION"},
};

/// 0 for an unknown category.
int maskOf(int category) noexcept {
    if (category == LC_ALL) return LC_ALL_MASK;
    for (Category const& known : categories)
        if (known.number == category) return known.mask;
    return 0;
}

char const* nameIn(locale_t locale, int category) noexcept { return nl_langinfo_l(NL_LOCALE_NAME(category), locale); }

bool areSame(locale_t a, locale_t b) noexcept {
    for (Category const& each : categories)
        if (std::strcmp(nameIn(a, each.number), nameIn(b, each.number)) != 0) return false;
    return true;
}

/// Makes it the thread's locale; where that is what the program had set, the program's own object is set again.
void adopt(locale_t next) noexcept {
    locale_t const current = uselocale(locale_t{});
    if (current != LC_GLOBAL_LOCALE && current != ownLocale) foreignLocale = current;
    if (foreignLocale != locale_t{} && areSame(next, foreignLocale)) {
        use(std::exchange(foreignLocale, locale_t{}));
        freelocale(next);
    } else {
        use(next);
        ownLocale = next;
        threadEnd.frees(next);
    }
}

bool isPair(wchar_t const* text) noexcept {
    return isSurrogateA(static_cast<unsigned int>(text[0])) && isSurrogateB(static_cast<unsigned int>(text[1]));
}

// Replaces each character by what map gives for it, where that takes as many units.
template <typename Map>
void mapEach(wchar_t* text, Map map) noexcept {
    while (*text != 0) {
        wchar_t const* next = text;
        // Behind a unit there is always another one, if only the terminator.
        unsigned int const value = unicode::readUnits(next, text + 2);
        auto const mapped = static_cast<unsigned int>(map(static_cast<wint_t>(value)));
        auto const units = static_cast<std::size_t>(next - text);
        bool const fits = unicode::unitsOf(value) == units && unicode::unitsOf(mapped) == units;
        if (unicode::isCharacter(value) && mapped < unicode::end && fits) unicode::writeUnits(mapped, text);
        text += units;
    }
}

bool hasPairs(wchar_t const* text) noexcept {
    for (; *text != 0; ++text)
        if (isPair(text)) return true;
    return false;
}

/// A text with one element for each character, as the C library takes it. Where it has no pairs, that is the text
/// itself.
class Combined {
public:
    explicit Combined(wchar_t const* text) noexcept : text_{text} {
        if (!hasPairs(text)) return;
        wchar_t const* const end = text + std::wcslen(text);
        bool const isRoom = scratch_.tryReserve(static_cast<std::size_t>(end - text) + 1);
        text_ = isRoom ? scratch_.data() : nullptr;
        if (!isRoom) return;
        wchar_t* out = scratch_.data();
        while (text != end) *out++ = static_cast<wchar_t>(unicode::readUnits(text, end));
        *out = 0;
    }

    wchar_t const* get() const noexcept { return text_; }  ///< null when there was no memory

private:
    wchar_t const* text_;
    Scratch<wchar_t, 64> scratch_;
};

}

int threadLocaleMode(int mode) noexcept {
    int const before = isPerThread() ? perThreadLocale : processLocale;
    // A locale that the program itself gave the thread stays: processLocale drops only one that was made here.
    if (mode == perThreadLocale && before == processLocale) {
        locale_t const copy = ORN_OS_REFUSED("_configthreadlocale") ? locale_t{} : duplocale(LC_GLOBAL_LOCALE);
        if (copy == locale_t{}) return -1;
        adopt(copy);
    } else if (mode == processLocale && ownLocale != locale_t{}) {
        use(LC_GLOBAL_LOCALE);
    }
    return before;
}

std::string localeName(int category) {
    if (maskOf(category) == 0) return {};
    if (!isPerThread()) return ::setlocale(category, nullptr);

    locale_t const current = uselocale(locale_t{});
    if (category != LC_ALL) return nameIn(current, category);
    std::string const first = nameIn(current, LC_CTYPE);
    std::string mixed;
    bool same = true;
    for (Category const& part : categories) {
        char const* const name = nameIn(current, part.number);
        same = same && first == name;
        if (!mixed.empty()) mixed += ';';
        mixed.append(part.name).append(1, '=').append(name);
    }
    return same ? first : mixed;
}

bool setLocale(int category, char const* name) noexcept {
    int const mask = maskOf(category);
    if (mask == 0 || ORN_OS_REFUSED("setlocale")) return false;
    if (!isPerThread()) return ::setlocale(category, name) != nullptr;

    // newlocale takes the base over, but with LC_ALL it would neither use nor free it.
    locale_t copy = nullptr;
    if (category != LC_ALL) {
        copy = duplocale(uselocale(locale_t{}));
        if (copy == locale_t{}) return false;
    }
    locale_t const next = newlocale(mask, name, copy);
    if (next == locale_t{}) {
        if (copy != locale_t{}) freelocale(copy);
        return false;
    }
    adopt(next);
    return true;
}

void upperCase(wchar_t* text) noexcept {
    mapEach(text, [](wint_t character) { return towupper(character); });
}
void lowerCase(wchar_t* text) noexcept {
    mapEach(text, [](wint_t character) { return towlower(character); });
}

int collate(wchar_t const* a, wchar_t const* b) noexcept {
    if (ORN_OS_REFUSED("wcscoll")) {
        errno = EINVAL;
        return 1;
    }
    Combined const left{a}, right{b};
    if (left.get() == nullptr || right.get() == nullptr) {
        errno = ENOMEM;
        return 0;
    }
    return std::wcscoll(left.get(), right.get());
}

}
