#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/Printf.h"
#include "orn/text/TextDecoderImp.h"
#include "orn/text/TextEncodingImp.h"
#include "ornmsg/ornmsg.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace ORN {

namespace {

constexpr unsigned int notText = 248;
constexpr std::size_t bufferSize = 1024;
constexpr std::size_t longestCharacter = 16;  // in bytes, of any encoding

using decoding::Byte;

/// Takes bytes from a raw reader and cuts what a decoder makes of them into lines.
template <typename Decoder>
class LineSource final : public TextReader {
public:
    /// The bytes, which are few, stand before those that the raw reader gives.
    LineSource(RawReader& raw, Byte const* first, std::size_t count) noexcept : raw_{raw}, count_{count} {
        std::copy_n(first, count, buffer_);
    }

    bool readLine(std::wstring& line) override {
        line.clear();
        if (interrupted_) line.swap(begun_);
        // It stays set when goOn throws.
        interrupted_ = true;
        bool const came = goOn(line);
        interrupted_ = false;
        return came;
    }

    void close() override {}

private:
    /// Reads on behind what the line has already. An exception leaves the beginning of the line in begun_, for the next
    /// call.
    bool goOn(std::wstring& line) try {
        while (!behindReturn_) {
            if (takeFromBuffer(line)) return true;
            unsigned int value = 0;
            std::size_t const length = look(value);
            // A line end that ends the input has no line behind it, not even an empty one.
            if (length == 0) return !line.empty();
            bool const ends = isLineEnd(value);
            if (!ends) {
                wchar_t units[2];
                line.append(units, unicode::writeUnits(value, units));
            }
            // Only a character that the line has got is behind it: there may be no memory for more of the line.
            position_ += length;
            if (value == 0x0D)
                behindReturn_ = true;
            else if (ends)
                return true;
        }
        unsigned int value = 0;
        // Anything but a LF belongs to the next line.
        if (std::size_t const length = look(value); value == 0x0A) position_ += length;
        behindReturn_ = false;
        return true;
    } catch (...) {
        begun_.swap(line);
        line.clear();
        throw;
    }

    /// Appends what the buffer holds of the line. True when it ends there. A character that is cut off or invalid is
    /// left, and so is a CR that the buffer ends with.
    bool takeFromBuffer(std::wstring& line) {
        // A byte gives one unit at most, and decodeRun may write a block of units behind the last one that counts.
        wchar_t units[bufferSize + ascii::block];
        wchar_t* to = units;
        Byte const *p = buffer_ + position_, *const end = buffer_ + count_;
        bool ended = false;
        while (p != end) {
            decoder_.decodeRun(to, p, end);
            unsigned int value = 0;
            std::size_t const taken = decodeOne(value, p, end);
            if (taken == 0) break;
            if (isLineEnd(value)) {
                ended = takeLineEnd(value, p, p + taken, end);
                break;
            }
            to = unicode::writeUnits(value, to);
            p += taken;
        }
        line.append(units, to);
        position_ = static_cast<std::size_t>(p - buffer_);
        return ended;
    }

    /// Moves p from a line end behind it, and behind the LF of CR LF. False for a CR when it is not known what follows.
    bool takeLineEnd(unsigned int value, Byte const*& p, Byte const* next, Byte const* end) const {
        if (value == 0x0D) {
            unsigned int following = 0;
            std::size_t const taken = decodeOne(following, next, end);
            if (taken == 0) return false;
            if (following == 0x0A) next += taken;
        }
        p = next;
        return true;
    }

    /// How many bytes the character at p takes; 0 when they are not one that a text may hold, or not all of it.
    std::size_t decodeOne(unsigned int& value, Byte const* p, Byte const* end) const noexcept {
        std::size_t const taken = decoder_.decodeOne(value, p, static_cast<std::size_t>(end - p));
        return unicode::isCharacter(value) ? taken : 0;
    }

    /// Looks at the next character, for which it may have to read. Returns how many bytes it takes; 0 at the end of the
    /// input.
    std::size_t look(unsigned int& value) {
        std::size_t taken = 0;
        while ((taken = decoder_.decodeOne(value, buffer_ + position_, count_ - position_)) == 0) {
            // The decoder gives 0 for invalid bytes and for a character that is cut off. More bytes tell which it is.
            if (count_ - position_ >= longestCharacter) fail();
            if (refill()) continue;
            if (position_ != count_) fail();
            return 0;
        }
        if (!unicode::isCharacter(value)) fail();
        return taken;
    }

    bool refill() {
        count_ -= position_;
        // Fewer bytes are left than the longest character has, so there is always room to read more.
        std::memmove(buffer_, buffer_ + position_, count_);
        position_ = 0;
        std::int64_t const came = raw_.read(buffer_ + count_, bufferSize - count_);
        if (came <= 0) return false;
        count_ += static_cast<std::size_t>(came);
        return true;
    }

    [[noreturn]] void fail() const { throw OrnError{stringPrintf(ornMsg(notText).c_str(), raw_.name().c_str())}; }

    RawReader& raw_;
    Decoder decoder_;
    Byte buffer_[bufferSize];
    std::size_t count_ = 0;
    std::size_t position_ = 0;
    std::wstring begun_;         // the line that an exception interrupted
    bool interrupted_ = false;   // the last readLine threw
    bool behindReturn_ = false;  // it threw while it looked for the LF behind a CR
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

TextReader* makeReader(RawReader& raw, TextEncoding encoding, Byte const* first, std::size_t count) {
    using namespace decoding;
    switch (encoding) {
        case encMultibyte: return new LineSource<MultibyteDecoder>{raw, first, count};
        case encUTF8: return new LineSource<Utf8Decoder>{raw, first, count};
        case encUTF16:
        case encUTF16le: return new LineSource<Utf16leDecoder>{raw, first, count};
        case encUTF16be: return new LineSource<Utf16beDecoder>{raw, first, count};
    }
    return nullptr;
}

}

TextReader::TextReader() = default;
TextReader::~TextReader() = default;

TextReader* TextReader::create(RawReader& raw, TextEncoding encoding) { return makeReader(raw, encoding, nullptr, 0); }

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
    // A raw reader may give the bytes of a mark one by one.
    while (Signature::undecided(first, count)) {
        std::int64_t const came = raw.read(first + count, sizeof first - static_cast<std::uint64_t>(count));
        if (came <= 0) break;
        count += came;
    }
    // The reader gets the bytes that were read here, because a pipe cannot go back to them.
    Signature const signature = Signature::of(first, count, withoutMark);
    return makeReader(raw, signature.encoding, first + signature.length,
                      static_cast<std::size_t>(count - signature.length));
}

}
