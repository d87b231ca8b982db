#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Printf.h"
#include "orn/text/TextEncodingImp.h"
#include "orn/unicode/Ascii.h"
#include "orn/unicode/CodePoints.h"
#include "ornmsg/ornmsg.h"

#include <bit>
#include <cstring>
#include <memory>
#include <utility>

namespace ORN {

namespace {

constexpr unsigned int notText = 248;
constexpr std::uint64_t bufferSize = 1024;
constexpr std::uint64_t longestCharacter = 16;  // in bytes, of any encoding

/// A stretch of text taken from the buffer, and whether the line ended behind it (then bytes counts the line end, too).
struct Run {
    std::uint64_t bytes;
    std::size_t units;
    bool lineEnded;
};

class TextReaderImp : public TextReader {
public:
    explicit TextReaderImp(RawReader& raw) noexcept : raw_{raw} {}

    TextReaderImp(TextReaderImp const&) = delete;
    TextReaderImp& operator=(TextReaderImp const&) = delete;

    /// Puts bytes in front of those that the raw reader gives; before the first readLine.
    void putBack(unsigned char const* bytes, std::uint64_t count) noexcept {
        std::memcpy(buffer_, bytes, count);
        count_ = count;
    }

    bool readLine(std::wstring& line) override {
        line.clear();
        if (interrupted_) line.swap(begun_);
        interrupted_ = true;
        bool const came = goOn(line);
        interrupted_ = false;
        return came;
    }

    void close() override {}

protected:
    /// How many bytes the character at their head takes; 0 when they are no whole valid one.
    virtual std::uint64_t decode(CodePoint& c, unsigned char const* bytes, std::uint64_t available) const = 0;

    /// Takes what decode would take, up to and with a line end, or up to something that needs a closer look. That is one
    /// unit a byte at most; up to ascii::block units are written beyond those counted.
    virtual Run takeRun(wchar_t* units, unsigned char const* bytes, std::uint64_t available) const = 0;

private:
    // Whatever it throws leaves the beginning of the line in begun_, for the next call.
    bool goOn(std::wstring& line) try {
        while (!behindReturn_) {
            wchar_t units[bufferSize + ascii::block];
            Run const run = takeRun(units, buffer_ + position_, count_ - position_);
            line.append(units, run.units);
            position_ += run.bytes;
            if (run.lineEnded) return true;

            CodePoint c = CodePoint::codePoint(0);
            if (fetch(c) == 0) return !line.empty();
            switch (c.eolCode()) {
                case CodePoint::eolNewline: return true;
                case CodePoint::eolReturn: behindReturn_ = true; break;
                case CodePoint::eolNone: line.append(units, c.wchars(units, 2));
            }
        }
        CodePoint c = CodePoint::codePoint(0);
        if (std::uint64_t const taken = fetch(c); taken != 0 && c.value() != 0x0A) position_ -= taken;
        behindReturn_ = false;
        return true;
    } catch (...) {
        begun_.swap(line);
        line.clear();
        throw;
    }

    /// How many bytes the next character took; 0 at the end of the input.
    std::uint64_t fetch(CodePoint& c) {
        std::uint64_t taken = decode(c, buffer_ + position_, count_ - position_);
        while (taken == 0) {
            bool const whole = count_ - position_ >= longestCharacter;
            if (whole || !refill()) {
                if (position_ == count_) return 0;
                fail();
            }
            taken = decode(c, buffer_ + position_, count_ - position_);
        }
        if (c.value() >= 0x110000 || isSurrogate(c.value())) fail();
        position_ += taken;
        return taken;
    }

    bool refill() {
        count_ -= position_;
        std::memmove(buffer_, buffer_ + position_, count_);
        position_ = 0;
        std::int64_t const came = raw_.read(buffer_ + count_, bufferSize - count_);
        if (came <= 0) return false;
        count_ += static_cast<std::uint64_t>(came);
        return true;
    }

    [[noreturn]] void fail() const { throw OrnError{stringPrintf(ornMsg(notText).c_str(), raw_.name().c_str())}; }

    RawReader& raw_;
    unsigned char buffer_[bufferSize];
    std::uint64_t count_ = 0;
    std::uint64_t position_ = 0;
    std::wstring begun_;         // the line that an exception interrupted
    bool interrupted_ = false;   // the last readLine threw
    bool behindReturn_ = false;  // it did so in search of a line feed
};

constexpr bool isCharacter(unsigned int value) noexcept { return value < 0x110000 && !isSurrogate(value); }

wchar_t* append(wchar_t* out, unsigned int value) noexcept {
    if (value < 0x10000) {
        *out++ = static_cast<wchar_t>(value);
    } else {
        *out++ = static_cast<wchar_t>(0xD800 | (value - 0x10000) >> 10);
        *out++ = static_cast<wchar_t>(0xDC00 | (value & 0x3FF));
    }
    return out;
}

// Widens a block of bytes; the bits returned tell which of them are no ASCII, or line ends.
inline unsigned int widenBlock(wchar_t* out, unsigned char const* bytes) noexcept {
    unsigned int const ends = ascii::find(bytes, 0x0A, 0x0C, 0x0D);  // before what is written could be one of the bytes
    return ends | ascii::widen(bytes, out);
}

/// The two virtual steps of a reader, from the inline ones of the derived class: step, which decodes a character, and
/// takePlain, which takes as much as it can quickly of what are no line ends and no surrogates.
template <typename Derived>
class StepReader : public TextReaderImp {
public:
    using TextReaderImp::TextReaderImp;

protected:
    std::uint64_t decode(CodePoint& c, unsigned char const* bytes, std::uint64_t available) const override {
        unsigned int value = 0;
        std::uint64_t const taken = derived().step(value, bytes, available);
        c = CodePoint::codePoint(value);
        return taken;
    }

    Run takeRun(wchar_t* units, unsigned char const* bytes, std::uint64_t available) const override {
        unsigned char const *p = bytes, *const end = bytes + available;
        wchar_t* out = units;
        bool lineEnded = false;
        while (p != end) {
            derived().takePlain(out, p, end);
            unsigned int value = 0;
            std::uint64_t const taken = derived().step(value, p, static_cast<std::uint64_t>(end - p));
            if (taken == 0 || !isCharacter(value)) break;
            if (isLineEnd(value)) {
                lineEnded = takeLineEnd(value, taken, p, end);
                break;
            }
            out = append(out, value);
            p += taken;
        }
        return {static_cast<std::uint64_t>(p - bytes), static_cast<std::size_t>(out - units), lineEnded};
    }

private:
    Derived const& derived() const noexcept { return static_cast<Derived const&>(*this); }

    // False for a CR when what stands behind it is not at hand.
    bool takeLineEnd(unsigned int value, std::uint64_t taken, unsigned char const*& p, unsigned char const* end) const {
        if (value == 0x0D) {
            unsigned int next = 0;
            std::uint64_t const more = derived().step(next, p + taken, static_cast<std::uint64_t>(end - p) - taken);
            if (more == 0 || !isCharacter(next)) return false;
            if (next == 0x0A) taken += more;
        }
        p += taken;
        return true;
    }
};

class UTF8ReaderImp final : public StepReader<UTF8ReaderImp> {
public:
    using StepReader::StepReader;

    static void takePlain(wchar_t*& units, unsigned char const*& bytes, unsigned char const* end) noexcept {
        wchar_t* out = units;  // local, so that what is written through it cannot change it
        unsigned char const* p = bytes;
        while (end - p >= ascii::block) {
            // E3 to EC lead no surrogates, no line ends and nothing small.
            if (*p - 0xE3u <= 0xECu - 0xE3u && p[1] <= 0xC0 && p[2] <= 0xC0) {
                *out++ = static_cast<wchar_t>((p[0] & 0x0Fu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu));
                p += 3;
                continue;
            }
            if (*p < 0x80) {
                unsigned int const stops = widenBlock(out, p);
                std::ptrdiff_t const taken = stops == 0 ? ascii::block : std::countr_zero(stops);
                out += taken;
                p += taken;
                if (stops == 0) continue;
                if (*p < 0x80 || end - p < 3) break;
            }
            // Steps of a constant length, so that one character's does not wait for another's.
            if (*p < 0xE0) {
                unsigned int const value = (p[0] & 0x1Fu) << 6 | (p[1] & 0x3Fu);
                if ((p[1] > 0xC0) | (value < 0x86)) break;
                *out++ = static_cast<wchar_t>(value);
                p += 2;
            } else if (*p < 0xF0) {
                unsigned int const value = (p[0] & 0x0Fu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu);
                bool const invalid = (p[1] > 0xC0) | (p[2] > 0xC0) | isSurrogate(value);
                if (invalid | (value < 0x86) | ((value & ~1u) == 0x2028)) break;
                *out++ = static_cast<wchar_t>(value);
                p += 3;
            } else {
                break;
            }
        }
        units = out;
        bytes = p;
    }

    static std::uint64_t step(unsigned int& value, unsigned char const* bytes, std::uint64_t available) noexcept {
        if (available == 0) return 0;
        unsigned int const lead = bytes[0];
        if (lead < 0x80) {
            value = lead;
            return 1;
        }
        if (lead >= 0xF8) return 0;
        // Leniently, 80..BF lead two bytes, and what follows a lead may be anything up to C0.
        std::uint64_t const length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (available < length) return 0;
        unsigned int decoded = lead & (length == 2 ? 0x1Fu : length == 3 ? 0x0Fu : 0x07u);
        for (std::uint64_t i = 1; i < length; ++i) {
            if (bytes[i] > 0xC0) return 0;
            decoded = decoded << 6 | (bytes[i] & 0x3Fu);
        }
        value = decoded;
        return length;
    }
};

// A unit's low byte stands at the one place of its two, its high byte at the other.
template <unsigned int low, unsigned int high>
class UTF16ReaderImp final : public StepReader<UTF16ReaderImp<low, high>> {
public:
    using StepReader<UTF16ReaderImp>::StepReader;

    static void takePlain(wchar_t*&, unsigned char const*&, unsigned char const*) noexcept {}

    static std::uint64_t step(unsigned int& value, unsigned char const* bytes, std::uint64_t available) noexcept {
        if (available < 2) return 0;
        auto const unit = [bytes](unsigned int at) -> unsigned int { return bytes[at + low] | bytes[at + high] << 8; };
        if (!isSurrogate(unit(0))) {
            value = unit(0);
            return 2;
        }
        return available >= 4 && fromUTF16(value, unit(0), unit(2)) ? 4 : 0;
    }
};
using UTF16leReaderImp = UTF16ReaderImp<0, 1>;
using UTF16beReaderImp = UTF16ReaderImp<1, 0>;

class MultibyteReaderImp final : public StepReader<MultibyteReaderImp> {
public:
    explicit MultibyteReaderImp(RawReader& raw) noexcept : StepReader{raw} {
        for (unsigned char byte = 0; byte < 0x80 && ascii_; ++byte) {
            unsigned int value = 0;
            ascii_ = step(value, &byte, 1) == 1 && value == byte;
        }
    }

    void takePlain(wchar_t*& out, unsigned char const*& p, unsigned char const* end) const noexcept {
        while (ascii_ && end - p >= ascii::block) {
            unsigned int const stops = widenBlock(out, p);
            std::ptrdiff_t const taken = stops == 0 ? ascii::block : std::countr_zero(stops);
            out += taken;
            p += taken;
            if (stops != 0) return;
        }
    }

    static std::uint64_t step(unsigned int& value, unsigned char const* bytes, std::uint64_t available) noexcept {
        if (available == 0) return 0;
        int const taken = os::decodeMultibyte(reinterpret_cast<char const*>(bytes), static_cast<int>(available), value);
        if (taken == 0) {
            value = 0;
            return 1;
        }
        return taken > 0 ? static_cast<std::uint64_t>(taken) : 0;
    }

private:
    bool ascii_ = true;  // every byte below 0x80 is that character
};

class TextFileReaderImp final : public TextReader {
public:
    TextFileReaderImp(std::unique_ptr<RawFileReader> raw, std::unique_ptr<TextReader> text) noexcept
        : raw_{std::move(raw)}, text_{std::move(text)} {}

    bool readLine(std::wstring& line) override { return text_->readLine(line); }

    void close() override {
        text_->close();
        raw_->close();
    }

private:
    std::unique_ptr<RawFileReader> raw_;
    std::unique_ptr<TextReader> text_;
};

std::unique_ptr<TextReaderImp> makeReader(RawReader& raw, TextEncoding encoding) {
    switch (encoding) {
        case encMultibyte: return std::make_unique<MultibyteReaderImp>(raw);
        case encUTF8: return std::make_unique<UTF8ReaderImp>(raw);
        case encUTF16:
        case encUTF16le: return std::make_unique<UTF16leReaderImp>(raw);
        case encUTF16be: return std::make_unique<UTF16beReaderImp>(raw);
    }
    return nullptr;
}

}

TextReader::TextReader() = default;
TextReader::~TextReader() = default;

TextReader* TextReader::create(RawReader& raw, TextEncoding encoding) { return makeReader(raw, encoding).release(); }

TextReader* TextReader::create(std::wstring const& filename) { return create(filename, encMultibyte); }

TextReader* TextReader::create(std::wstring const& filename, TextEncoding withoutMark) {
    if (!isEncoding(withoutMark)) return nullptr;
    std::unique_ptr<RawFileReader> raw{rawOpen(filename)};
    std::unique_ptr<TextReader> text{createByMark(*raw, withoutMark)};
    return new TextFileReaderImp{std::move(raw), std::move(text)};
}

TextReader* TextReader::createByMark(RawReader& raw, TextEncoding withoutMark) {
    if (!isEncoding(withoutMark)) return nullptr;
    unsigned char first[Signature::longest];
    std::int64_t count = 0;
    while (Signature::undecided(first, count)) {
        std::int64_t const came = raw.read(first + count, sizeof first - static_cast<std::uint64_t>(count));
        if (came <= 0) break;
        count += came;
    }
    // What has been looked at is kept, because not everything can be sought.
    Signature const signature = Signature::of(first, count, withoutMark);
    auto text = makeReader(raw, signature.encoding);
    text->putBack(first + signature.length, static_cast<std::uint64_t>(count - signature.length));
    return text.release();
}

}
