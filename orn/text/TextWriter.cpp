#include "orn/text/TextWriter.h"

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/os/File.h"
#include "orn/os/Types.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFileImp.h"
#include "orn/text/TextEncodingImp.h"
#include "orn/text/TextWriterImp.h"
#include "orn/unicode/Ascii.h"
#include "orn/unicode/CodePoints.h"
#include "ornmsg/ornmsg.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ORN {

namespace {

constexpr unsigned int cannotWriteCharacter = 254;
constexpr std::uint64_t longestCharacter = 16;  // in bytes, of any encoding
constexpr wchar_t feed = 0x0A, formFeed = 0x0C, carriageReturn = 0x0D;

constexpr bool endsLine(unsigned int unit) noexcept { return isLineEnd(unit) && unit != formFeed; }

class TextWriterImp : public WholeTextWriter {
public:
    TextWriterImp(RawWriter& raw, TextLineEnd lineEnd) noexcept : raw_{raw}, lineEnd_{lineEnd} {}

    ~TextWriterImp() override {
        try {
            if (failure_ == nullptr) writeOut();
        } catch (...) {}
    }

    TextWriterImp(TextWriterImp const&) = delete;
    TextWriterImp& operator=(TextWriterImp const&) = delete;

    void write(std::wstring const& text) override {
        begin();
        put(text);
    }

    void writeLine(std::wstring const& text) override {
        begin();
        put(text);
        putLineEnd();
    }

    void writeWhole(std::wstring const& text) override {
        begin();
        // The text is first tried in the room behind what the buffer holds, which has to take any character. What fits
        // there is written by that.
        if (sizeof buffer_ - count_ < longestCharacter) makeRoom();
        trial_ = Trial::fits;
        try {
            put(text);
        } catch (...) {
            trial_ = Trial::none;
            forget();
            throw;
        }
        if (std::exchange(trial_, Trial::none) == Trial::fits) return;
        forget();
        put(text);
    }

    void flush() override {
        begin();
        writeOut();
        raw_.flush();
    }

    void close() override { flush(); }

protected:
    /// Encodes a character and returns how many bytes that took; 0 when there is no room for them, or the encoding
    /// lacks the character.
    virtual std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const = 0;

    /// Encodes units that encode would take and that end no line, as far as it can go quickly and no further than `end`
    /// and `stop`. Moves `from` behind them, and returns the end of their bytes.
    virtual unsigned char* takeRun(wchar_t const*& from, wchar_t const* end, unsigned char* destination,
                                   unsigned char* stop) const = 0;

private:
    enum class Trial { none, fits, tooLong };

    void begin() {
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        begun_ = static_cast<std::int64_t>(count_);
    }

    void put(std::wstring const& text) {
        wchar_t const *p = text.data(), *const end = p + text.size();
        for (;;) {
            // A run ends at a line end, at a pair, or near the end of the buffer: there a single character is taken.
            unsigned char* const written = takeRun(p, end, buffer_ + count_, buffer_ + sizeof buffer_);
            count_ = static_cast<std::uint64_t>(written - buffer_);
            if (p == end) return;
            auto const unit = static_cast<unsigned int>(*p++);
            if (endsLine(unit)) {
                if (unit == carriageReturn && p != end && *p == feed) ++p;
                putLineEnd();
            } else if (isSurrogate(unit)) {
                unsigned int value = unit;  // a pair may not be divided between two texts
                if (p == end || !fromUTF16(value, unit, static_cast<unsigned int>(*p++))) fail(unit);
                put(value);
            } else {
                put(unit);
            }
        }
    }

    void put(unsigned int value) {
        CodePoint const c = CodePoint::codePoint(value);
        // CodePoint would encode surrogates, and in UTF-8 also values beyond U+10FFFF.
        if (value >= 0x110000 || isSurrogate(value)) fail(value);
        std::uint64_t written = 0;
        while ((written = encode(c, buffer_ + count_, sizeof buffer_ - count_)) == 0) {
            // Where every character has room, only the encoding can be the reason.
            if (sizeof buffer_ - count_ >= longestCharacter) fail(value);
            makeRoom();
        }
        count_ += written;
    }

    void putLineEnd() {
        if (lineEnd_ == lineEndCRLF) put(carriageReturn);
        put(feed);
    }

    // A text is written as a whole or not at all. So what stands before it leaves the buffer alone: a file that takes
    // only some of the bytes then has none of the text, as long as the text fits into the buffer. When the first part of
    // a longer text is written and the rest cannot be, nothing may follow.
    void makeRoom() {
        if (trial_ != Trial::none) {
            trial_ = Trial::tooLong;
            return forget();
        }
        try {
            writeOut(begun_ > 0 ? static_cast<std::uint64_t>(begun_) : count_);
        } catch (...) {
            if (begun_ < 0)
                failure_ = std::current_exception();
            else
                forget();
            throw;
        }
    }

    // Forgets the text being written, all of which is still in the buffer.
    void forget() noexcept { count_ = static_cast<std::uint64_t>(begun_); }

    void writeOut() { writeOut(count_); }

    void writeOut(std::uint64_t bytes) {
        if (bytes == 0) return;
        try {
            raw_.write(buffer_, bytes);
        } catch (RawWriteError const& error) {
            // Files of this library tell how many bytes they took. Other raw writers that throw count as taking none.
            drop(error.taken());
            throw;
        }
        drop(bytes);
    }

    // Forgets bytes that the raw writer has taken.
    void drop(std::uint64_t bytes) noexcept {
        count_ -= bytes;
        begun_ -= static_cast<std::int64_t>(bytes);
        std::memmove(buffer_, buffer_ + bytes, count_);
    }

    [[noreturn]] void fail(unsigned int value) const {
        std::wstring const character = stringPrintf(L"U+%04lX", static_cast<DWORD>(value));
        throw OrnError{stringPrintf(ornMsg(cannotWriteCharacter).c_str(), character.c_str(), raw_.name().c_str())};
    }

    RawWriter& raw_;
    unsigned char buffer_[1024];
    std::uint64_t count_ = 0;
    // Where the text being written begins in the buffer; negative once its first part has left the buffer.
    std::int64_t begun_ = 0;
    TextLineEnd lineEnd_;
    Trial trial_ = Trial::none;  // any but none: what is put stays in the buffer
    std::exception_ptr failure_;
};

// Takes ASCII up to a line end. In a text that is written, a form feed ends no line.
void takeASCII(wchar_t const*& from, wchar_t const* end, unsigned char*& to, unsigned char const* stop) noexcept {
    while (end - from >= ascii::block && stop - to >= ascii::block) {
        // The whole block is stored, but only what stands before the first stop counts.
        unsigned int stops = ascii::narrow(from, to);
        stops |= ascii::find(to, 0x0A, 0x0D);
        std::ptrdiff_t const taken = stops == 0 ? ascii::block : std::countr_zero(stops);
        from += taken;
        to += taken;
        if (stops != 0) return;
    }
    for (; from != end && to != stop; ++from) {
        auto const unit = static_cast<unsigned int>(*from);
        if (unit >= 0x80 || endsLine(unit)) return;
        *to++ = static_cast<unsigned char>(unit);
    }
}

// Takes the basic plane up to a line end or a surrogate.
unsigned char* takeUTF8(wchar_t const*& from, wchar_t const* end, unsigned char* to, unsigned char* stop) noexcept {
    wchar_t const* p = from;
    auto const continuation = [](unsigned int bits) { return static_cast<unsigned char>(0x80 | (bits & 0x3F)); };
    auto const putThree = [&](unsigned int unit) {
        to[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
        to[1] = continuation(unit >> 6);
        to[2] = continuation(unit);
        to += 3;
    };
    for (;;) {
        // takeASCII stops at other units, and the loop below at ASCII. They take turns until the loop takes nothing.
        takeASCII(p, end, to, stop);
        wchar_t const* const begin = p;
        // A unit of the basic plane takes three bytes at most.
        for (; p != end && stop - to >= 3; ++p) {
            auto const unit = static_cast<unsigned int>(*p);
            // NOLINTNEXTLINE(bugprone-branch-clone): units that need no closer look come first
            if (unit - 0x3000 < 0xD800 - 0x3000) {
                putThree(unit);
            } else if (unit < 0x80 || unit > 0xFFFF || isSurrogate(unit) || endsLine(unit)) {
                break;
            } else if (unit < 0x800) {
                to[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
                to[1] = continuation(unit);
                to += 2;
            } else {
                putThree(unit);
            }
        }
        if (p == begin) break;
    }
    from = p;
    return to;
}

class UTF8WriterImp final : public TextWriterImp {
public:
    using TextWriterImp::TextWriterImp;

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        return c.utf8(reinterpret_cast<char*>(destination), room);
    }

    unsigned char* takeRun(wchar_t const*& from, wchar_t const* end, unsigned char* destination,
                           unsigned char* stop) const override {
        return takeUTF8(from, end, destination, stop);
    }
};

#if defined(ORN_SSE2)
// Loads eight units. Two bits of `stops` are set for each that is a line end, a surrogate or no code unit at all.
inline __m128i lookAtEight(wchar_t const* from, unsigned int& stops) noexcept {
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    __m128i units = _mm_loadu_si128(source);
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores): read where wchar_t has two bytes
    __m128i others = _mm_setzero_si128();
    if constexpr (sizeof(wchar_t) == 4) {
        __m128i const more = _mm_loadu_si128(source + 1);
        // Packing saturates signed numbers, so the low halves are first extended by their signs. A unit has no high half.
        auto const low = [](__m128i some) { return _mm_srai_epi32(_mm_slli_epi32(some, 16), 16); };
        others = _mm_packs_epi32(_mm_srai_epi32(units, 16), _mm_srai_epi32(more, 16));
        units = _mm_packs_epi32(low(units), low(more));
    }
    auto const equals = [](__m128i some, int value) {
        return _mm_cmpeq_epi16(some, _mm_set1_epi16(static_cast<short>(value)));
    };
    auto const masked = [units](int mask) { return _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(mask))); };
    __m128i found = _mm_xor_si128(equals(others, 0), _mm_set1_epi16(-1));
    found = _mm_or_si128(found, _mm_or_si128(equals(units, 0x0A), equals(units, 0x0D)));
    found = _mm_or_si128(found, _mm_or_si128(equals(units, 0x85), equals(masked(0xFFFE), 0x2028)));
    found = _mm_or_si128(found, equals(masked(0xF800), 0xD800));
    stops = static_cast<unsigned int>(_mm_movemask_epi8(found));
    return units;
}
#endif

// A unit's low byte goes to one of its two places, its high byte to the other.
template <unsigned int low, unsigned int high>
class UTF16WriterImp final : public TextWriterImp {
public:
    using TextWriterImp::TextWriterImp;

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        wchar_t units[2];
        std::size_t const count = c.wchars(units, room / 2);
        for (std::size_t i = 0; i < count; ++i) put(static_cast<unsigned int>(units[i]), destination + 2 * i);
        return 2 * count;
    }

    unsigned char* takeRun(wchar_t const*& from, wchar_t const* end, unsigned char* destination,
                           unsigned char* stop) const override {
        wchar_t const* p = from;
        unsigned char* to = destination;
#if defined(ORN_SSE2)
        while (end - p >= 8 && stop - to >= 16) {
            unsigned int stops = 0;
            __m128i units = lookAtEight(p, stops);
            // Processors with SSE2 are little-endian, so only the other order needs its bytes exchanged.
            if constexpr (high == 0) units = _mm_or_si128(_mm_slli_epi16(units, 8), _mm_srli_epi16(units, 8));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), units);
            std::ptrdiff_t const taken = stops == 0 ? 8 : std::countr_zero(stops) / 2;
            p += taken;
            to += 2 * taken;
            if (stops != 0) break;
        }
#endif
        for (; p != end && stop - to >= 2; ++p, to += 2) {
            auto const unit = static_cast<unsigned int>(*p);
            if (unit > 0xFFFF || isSurrogate(unit) || endsLine(unit)) break;
            put(unit, to);
        }
        from = p;
        return to;
    }

private:
    static void put(unsigned int unit, unsigned char* to) noexcept {
        to[low] = static_cast<unsigned char>(unit & 0xFF);
        to[high] = static_cast<unsigned char>(unit >> 8 & 0xFF);
    }
};
using UTF16leWriterImp = UTF16WriterImp<0, 1>;
using UTF16beWriterImp = UTF16WriterImp<1, 0>;

class MultibyteWriterImp final : public TextWriterImp {
public:
    MultibyteWriterImp(RawWriter& raw, TextLineEnd lineEnd) noexcept : TextWriterImp{raw, lineEnd} {
        // Asked once: nearly every code page keeps ASCII as it is, and where it is UTF-8 there is a quick way for the rest.
        wchar_t all[0x80];
        char bytes[0x80] = {};
        for (int i = 0; i != 0x80; ++i) all[i] = static_cast<wchar_t>(i);
        if (!converts(all, 0x80, bytes, 0x80)) return;
        ascii_ = std::equal(all, all + 0x80, bytes, [](wchar_t unit, char byte) { return unit == byte; });
        // Characters of two and of three bytes, because the quick way takes no longer ones.
        std::string_view const inUTF8 = "\xC3\xA9\xE2\x82\xAC\xE6\x97\xA5";
        utf8_ = ascii_ && converts(L"\u00e9\u20ac\u65e5", 3, bytes, 8) && inUTF8 == std::string_view{bytes, 8};
    }

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        wchar_t units[2];
        int const count = static_cast<int>(c.wchars(units, 2));
        // The seam counts in int; no code page has characters as long as this.
        int const most = static_cast<int>(std::min<std::uint64_t>(room, 10));
        bool substituted = false;
        int const written =
            os::wideToMultibyteStrictly(units, count, reinterpret_cast<char*>(destination), most, substituted);
        return substituted ? 0 : static_cast<std::uint64_t>(written);
    }

    unsigned char* takeRun(wchar_t const*& from, wchar_t const* end, unsigned char* destination,
                           unsigned char* stop) const override {
        if (utf8_) return takeUTF8(from, end, destination, stop);
        if (ascii_) takeASCII(from, end, destination, stop);
        return destination;
    }

private:
    // Whether the code page holds these units, in exactly so many bytes.
    static bool converts(wchar_t const* units, int count, char* bytes, int length) noexcept {
        bool substituted = false;
        return os::wideToMultibyteStrictly(units, count, bytes, length, substituted) == length && !substituted;
    }

    bool ascii_ = false;  // every unit below 0x80 is that byte
    bool utf8_ = false;   // the code page is UTF-8
};

class TextFileWriterImp final : public WholeTextWriter {
public:
    TextFileWriterImp(std::unique_ptr<RawFileWriter> raw, std::unique_ptr<WholeTextWriter> text) noexcept
        : raw_{std::move(raw)}, text_{std::move(text)} {}

    void write(std::wstring const& text) override { open().write(text); }
    void writeLine(std::wstring const& text) override { open().writeLine(text); }
    void writeWhole(std::wstring const& text) override { open().writeWhole(text); }
    void flush() override { open().flush(); }

    void close() override {
        if (closed_) return;
        // When the buffer cannot be written, the file stays open, and the call may be repeated. When the file cannot be
        // closed, it is gone all the same.
        text_->close();
        closed_ = true;
        raw_->close();
    }

private:
    WholeTextWriter& open() const {
        if (closed_) throw std::logic_error{"the text writer is closed"};
        return *text_;
    }

    std::unique_ptr<RawFileWriter> raw_;
    std::unique_ptr<WholeTextWriter> text_;  // destroyed first, because it still writes to the other
    bool closed_ = false;
};

std::unique_ptr<WholeTextWriter> makeWriter(RawWriter& raw, TextEncoding encoding, bool writeBOM, TextLineEnd lineEnd) {
    std::unique_ptr<WholeTextWriter> writer;
    switch (encoding) {
        case encMultibyte: writer = std::make_unique<MultibyteWriterImp>(raw, lineEnd); break;
        case encUTF8: writer = std::make_unique<UTF8WriterImp>(raw, lineEnd); break;
        case encUTF16:
        case encUTF16le: writer = std::make_unique<UTF16leWriterImp>(raw, lineEnd); break;
        case encUTF16be: writer = std::make_unique<UTF16beWriterImp>(raw, lineEnd); break;
        default: return nullptr;
    }
    if (writeBOM && encoding != encMultibyte) writer->write(std::wstring(1, wchar_t{0xFEFF}));
    return writer;
}

}

TextWriter::TextWriter() = default;
TextWriter::~TextWriter() = default;

TextWriter* TextWriter::create(RawWriter& raw, TextEncoding encoding, bool writeBOM) {
    return create(raw, encoding, writeBOM, lineEndCRLF);
}

TextWriter* TextWriter::create(RawWriter& raw, TextEncoding encoding, bool writeBOM, TextLineEnd lineEnd) {
    return makeWriter(raw, encoding, writeBOM, lineEnd).release();
}

namespace {

// An old file without a mark is appended to in the encoding `withoutMark`.
TextWriter* openWriter(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding, TextEncoding withoutMark,
                       bool writeBOM, TextLineEnd lineEnd) {
    bool const append = mode == textAppend;
    if (!isEncoding(encoding) && (!append || !os::fileExists(filename))) return nullptr;  // before there is a file

    std::unique_ptr<RawFileWriter> raw{append ? rawAppend(filename) : rawCreate(filename)};
    if (append) {
        raw->seek(0, 0);
        unsigned char first[Signature::longest];
        if (std::int64_t const count = raw->read(first, sizeof first); count > 0) {
            raw->seek(0, 2);  // between reading and writing a file has to be positioned
            encoding = Signature::of(first, count, withoutMark).encoding;
            writeBOM = false;
        }
    }
    std::unique_ptr<WholeTextWriter> text = makeWriter(*raw, encoding, writeBOM, lineEnd);
    return text == nullptr ? nullptr : new TextFileWriterImp{std::move(raw), std::move(text)};
}

}

TextWriter* TextWriter::create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding) {
    return openWriter(filename, mode, encoding, encMultibyte, true, lineEndCRLF);
}

TextWriter* TextWriter::create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding, bool writeBOM,
                               TextLineEnd lineEnd) {
    return openWriter(filename, mode, encoding, encoding, writeBOM, lineEnd);
}

}
