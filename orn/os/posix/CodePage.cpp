#include "orn/os/CodePage.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/Status.h"
#include "orn/unicode/CodePoints.h"

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <strings.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace ORN::os {

namespace {

iconv_t noDescriptor() noexcept { return reinterpret_cast<iconv_t>(-1); }

// The name of the character set; empty for UTF-8.
class CharacterSet {
public:
    static char const* name() {
        std::call_once(found_, find);
        return name_;
    }

private:
    static void find() noexcept {
        // The order in which the C library looks at them.
        char const* locale = "";
        for (char const* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
            char const* const value = std::getenv(variable);
            if (value != nullptr && *value != '\0') {
                locale = value;
                break;
            }
        }
        if (*locale == '\0' || std::strcmp(locale, "C") == 0 || std::strcmp(locale, "POSIX") == 0) return;

        // A locale that is not installed still names its character set, behind the full stop.
        if (locale_t const installed = newlocale(LC_CTYPE_MASK, "", nullptr)) {
            take(nl_langinfo_l(CODESET, installed));
            freelocale(installed);
        } else if (char const* const suffix = std::strchr(locale, '.')) {
            take(suffix + 1);
        }
    }

    static void take(char const* set) noexcept {
        // What iconv does not know counts as UTF-8.
        std::size_t const length = std::strcspn(set, "@");
        if (length == 0 || length >= sizeof name_) return;
        std::memcpy(name_, set, length);
        bool known = strcasecmp(name_, "UTF-8") != 0 && strcasecmp(name_, "UTF8") != 0;
        if (known) {
            iconv_t const trial = iconv_open("WCHAR_T", name_);
            known = trial != noDescriptor();
            if (known) iconv_close(trial);
        }
        if (!known) name_[0] = '\0';
    }

    static constinit std::once_flag found_;
    static constinit char name_[64];
};

constinit std::once_flag CharacterSet::found_;
constinit char CharacterSet::name_[64] = {};

// Descriptors of one direction of iconv that are not in use at the moment. Thread-local ones would be simpler, but
// their destructors would keep the library from ever being unloaded.
class IdleDescriptors {
public:
    constexpr IdleDescriptors() noexcept = default;
    ~IdleDescriptors() {
        while (iconv_t const descriptor = take()) iconv_close(descriptor);
    }
    IdleDescriptors(IdleDescriptors const&) = delete;
    IdleDescriptors& operator=(IdleDescriptors const&) = delete;

    /// Null when there is none.
    iconv_t take() noexcept {
        for (auto& place : places_)
            if (iconv_t const descriptor = place.exchange(nullptr)) return descriptor;
        return nullptr;
    }

    void give(iconv_t descriptor) noexcept {
        for (auto& place : places_)
            if (iconv_t none = nullptr; place.compare_exchange_strong(none, descriptor)) return;
        iconv_close(descriptor);
    }

private:
    std::atomic<iconv_t> places_[8] = {};
};

constinit IdleDescriptors toCodePoints, fromCodePoints;

// The use of one descriptor, from its initial state on.
class Converter {
public:
    Converter(IdleDescriptors& idle, char const* to, char const* from) noexcept
        : idle_{idle}, descriptor_{idle.take()} {
        if (descriptor_ != nullptr)
            restart();
        else
            descriptor_ = iconv_open(to, from);
    }
    ~Converter() {
        if (isOpen()) idle_.give(descriptor_);
    }
    Converter(Converter const&) = delete;
    Converter& operator=(Converter const&) = delete;

    bool isOpen() const noexcept { return descriptor_ != noDescriptor(); }

    void restart() noexcept { iconv(descriptor_, nullptr, nullptr, nullptr, nullptr); }

    /// Converts as iconv does, and returns 0 or the errno that stopped it. Without input, writes what iconv still holds
    /// back.
    int run(char const** in, std::size_t* inLeft, char** out, std::size_t* outLeft) noexcept {
        std::size_t const result = iconv(descriptor_, const_cast<char**>(in), inLeft, out, outLeft);
        return result == static_cast<std::size_t>(-1) ? errno : 0;
    }

private:
    IdleDescriptors& idle_;
    iconv_t descriptor_;
};

int failed(DWORD code) noexcept {
    setLastError(code);
    return 0;
}

// The code point at the units' head, which moves on. An unpaired surrogate, or an element that is no code unit, counts
// as the replacement character, and substituted is then set.
unsigned int nextCodePoint(wchar_t const*& units, wchar_t const* end, bool& substituted) noexcept {
    bool const isUnit = static_cast<unsigned int>(*units) <= 0xFFFF;
    unsigned int const value = unicode::readUnits(units, end);
    if (isUnit && unicode::isCharacter(value)) return value;
    substituted = true;
    return unicode::replacement;
}

// A buffer of units or bytes that is filled from the left.
template <typename T>
struct Target {
    T* next;
    T* end;

    std::size_t left() const noexcept { return static_cast<std::size_t>(end - next); }
};

bool append(Target<wchar_t>& target, unsigned int codePoint) noexcept {
    if (target.left() < unicode::unitsOf(codePoint)) return false;
    target.next = unicode::writeUnits(codePoint, target.next);
    return true;
}

bool append(Target<char>& target, unsigned int codePoint) noexcept {
    if (target.left() < unicode::utf8Length(codePoint)) return false;
    target.next = unicode::writeUtf8(codePoint, target.next);
    return true;
}

int readUTF8(char const* bytes, int length, unsigned int& codePoint) noexcept {
    return unicode::readUtf8<unicode::Leniency::none>(codePoint, reinterpret_cast<unsigned char const*>(bytes), length);
}

int utf8ToWide(char const* bytes, int length, wchar_t* units, int room) noexcept {
    Target<wchar_t> target{units, units + room};
    while (length > 0) {
        unsigned int codePoint;
        int read = readUTF8(bytes, length, codePoint);
        if (read < 0) {
            codePoint = unicode::replacement;
            read = -read;
        }
        if (!append(target, codePoint)) return failed(errorInsufficientBuffer);
        bytes += read;
        length -= read;
    }
    return static_cast<int>(target.next - units);
}

int wideToUTF8(wchar_t const* units, int length, char* bytes, int room, bool& substituted) noexcept {
    Target<char> target{bytes, bytes + room};
    for (wchar_t const* const end = units + length; units != end;)
        if (!append(target, nextCodePoint(units, end, substituted))) return failed(errorInsufficientBuffer);
    return static_cast<int>(target.next - bytes);
}

int convertToWide(char const* bytes, int length, wchar_t* units, int room) noexcept {
    Converter converter{toCodePoints, "WCHAR_T", CharacterSet::name()};
    if (!converter.isOpen()) return failed(errorNoUnicodeTranslation);

    Target<wchar_t> target{units, units + room};
    // Piece by piece over the stack. The last turn, without input, gets what iconv has held back.
    auto left = static_cast<std::size_t>(length);
    for (bool flushed = false; !flushed;) {
        wchar_t codePoints[64];
        char* out = reinterpret_cast<char*>(codePoints);
        std::size_t outLeft = sizeof codePoints - sizeof(wchar_t);  // one is kept for the replacement character
        flushed = left == 0;
        int const error =
            flushed ? converter.run(nullptr, nullptr, &out, &outLeft) : converter.run(&bytes, &left, &out, &outLeft);
        auto* end = reinterpret_cast<wchar_t*>(out);
        // EINVAL: the bytes end inside a character, so one replacement stands for all that are left. E2BIG only says
        // that the piece is full.
        if (error == EILSEQ || error == EINVAL) {
            *end++ = static_cast<wchar_t>(unicode::replacement);
            std::size_t const skipped = error == EINVAL ? left : 1;
            bytes += skipped;
            left -= skipped;
        }
        for (wchar_t const* p = codePoints; p != end; ++p)
            if (!append(target, static_cast<unsigned int>(*p))) return failed(errorInsufficientBuffer);
    }
    return static_cast<int>(target.next - units);
}

int convertFromWide(wchar_t const* units, int length, char* bytes, int room, bool& substituted) noexcept {
    Converter converter{fromCodePoints, CharacterSet::name(), "WCHAR_T"};
    if (!converter.isOpen()) return failed(errorNoUnicodeTranslation);

    char* out = bytes;
    auto outLeft = static_cast<std::size_t>(room);
    for (wchar_t const* const end = units + length; units != end;) {
        wchar_t codePoints[64];
        std::size_t count = 0;
        while (units != end && count < 64)
            codePoints[count++] = static_cast<wchar_t>(nextCodePoint(units, end, substituted));

        char const* in = reinterpret_cast<char const*>(codePoints);
        std::size_t inLeft = count * sizeof(wchar_t);
        while (inLeft > 0) {
            int const error = converter.run(&in, &inLeft, &out, &outLeft);
            if (error == 0) continue;
            // What the code page lacks becomes a question mark, and iconv goes on there. A page without one fails.
            if (error != EILSEQ || codePoints[count - inLeft / sizeof(wchar_t)] == L'?')
                return failed(error == E2BIG ? errorInsufficientBuffer : errorNoUnicodeTranslation);
            codePoints[count - inLeft / sizeof(wchar_t)] = L'?';
            substituted = true;
        }
    }
    // A code page with shift states ends in its initial one.
    if (converter.run(nullptr, nullptr, &out, &outLeft) != 0) return failed(errorInsufficientBuffer);
    return static_cast<int>(out - bytes);
}

}

int multibyteToWide(char const* bytes, int length, wchar_t* units, int room) noexcept {
    if (ORN_OS_REFUSED("MultiByteToWideChar")) return failed(errorInvalidFlags);
    if (length <= 0 || room <= 0) return failed(errorInvalidParameter);
    bool const utf8 = *CharacterSet::name() == '\0';
    return utf8 ? utf8ToWide(bytes, length, units, room) : convertToWide(bytes, length, units, room);
}

int wideToMultibyteStrictly(wchar_t const* units, int length, char* bytes, int room, bool& substituted) noexcept {
    substituted = false;
    if (ORN_OS_REFUSED("WideCharToMultiByte")) return failed(errorInvalidFlags);
    if (length <= 0 || room <= 0) return failed(errorInvalidParameter);
    return *CharacterSet::name() == '\0' ? wideToUTF8(units, length, bytes, room, substituted)
                                         : convertFromWide(units, length, bytes, room, substituted);
}

int wideToMultibyte(wchar_t const* units, int length, char* bytes, int room) noexcept {
    bool substituted;
    return wideToMultibyteStrictly(units, length, bytes, room, substituted);
}

int decodeMultibyte(char const* bytes, int length, unsigned int& codePoint) noexcept {
    if (length <= 0) return -1;
    if (*CharacterSet::name() == '\0') {
        unsigned int value;
        int const size = readUTF8(bytes, length, value);
        if (size < 0) return -1;
        codePoint = value;
        return value == 0 ? 0 : size;
    }

    // Byte by byte, because the descriptor would read on into the next character.
    Converter converter{toCodePoints, "WCHAR_T", CharacterSet::name()};
    if (!converter.isOpen()) return -1;
    int const longest = 8;  // bytes; no character set of the C library has longer characters
    for (int size = 1; size <= length && size <= longest; ++size) {
        converter.restart();
        wchar_t value = 0;
        char const* in = bytes;
        auto inLeft = static_cast<std::size_t>(size);
        char* out = reinterpret_cast<char*>(&value);
        std::size_t outLeft = sizeof value;
        int const error = converter.run(&in, &inLeft, &out, &outLeft);
        if (error == EINVAL) continue;
        if (error != 0) return -1;
        // Some sets hold a letter back until they know that no accent follows.
        if (outLeft != 0) converter.run(nullptr, nullptr, &out, &outLeft);
        if (outLeft != 0) continue;
        codePoint = static_cast<unsigned int>(value);
        return value == 0 ? 0 : size;
    }
    return -1;
}

}
