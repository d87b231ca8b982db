#include "orn/text/TextWriter.h"

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/os/Types.h"
#include "orn/text/CodePoint.h"
#include "orn/text/LineEndImp.h"
#include "orn/text/Printf.h"
#include "orn/text/TextEncodingImp.h"
#include "ornmsg/ornmsg.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace ORN {

namespace {

constexpr unsigned int cannotWriteCharacter = 254;
constexpr wchar_t feed = 0x0A, formFeed = 0x0C, carriageReturn = 0x0D;

class TextWriterImp : public TextWriter {
public:
    explicit TextWriterImp(RawWriter& raw) noexcept : raw_{raw} {}

    ~TextWriterImp() override {
        try {
            writeOut();
        } catch (...) {}
    }

    TextWriterImp(TextWriterImp const&) = delete;
    TextWriterImp& operator=(TextWriterImp const&) = delete;

    void write(std::wstring const& text) override {
        for (auto p = text.begin(), end = text.end(); p != end; ++p) {
            unsigned int const unit = static_cast<unsigned int>(*p);
            if (isLineEnd(unit) && unit != formFeed) {
                if (unit == carriageReturn && end - p > 1 && p[1] == feed) ++p;
                writeLineEnd();
            } else if (isSurrogate(unit)) {
                unsigned int value = unit;
                if (end - p < 2 || !fromUTF16(value, unit, static_cast<unsigned int>(p[1]))) fail(unit);
                put(value);
                ++p;
            } else {
                put(unit);
            }
        }
    }

    void writeLine(std::wstring const& text) override {
        write(text);
        writeLineEnd();
    }

    void flush() override {
        writeOut();
        raw_.flush();
    }

    void close() override { flush(); }

protected:
    /// How many bytes of the destination it took; 0 when the room is short, or the encoding lacks the character.
    virtual std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const = 0;

private:
    void put(unsigned int value) {
        CodePoint const c = CodePoint::codePoint(value);
        if (value >= 0x110000 || isSurrogate(value)) fail(value);
        std::uint64_t written = encode(c, buffer_ + count_, sizeof buffer_ - count_);
        if (written == 0) {
            writeOut();
            written = encode(c, buffer_, sizeof buffer_);
            if (written == 0) fail(value);
        }
        count_ += written;
    }

    void writeLineEnd() {
        put(carriageReturn);
        put(feed);
    }

    void writeOut() {
        if (count_ == 0) return;
        raw_.write(buffer_, count_);
        count_ = 0;
    }

    [[noreturn]] void fail(unsigned int value) const {
        std::wstring const character = stringPrintf(L"U+%04lX", static_cast<DWORD>(value));
        throw OrnError{stringPrintf(ornMsg(cannotWriteCharacter).c_str(), character.c_str(), raw_.name().c_str())};
    }

    RawWriter& raw_;
    unsigned char buffer_[1024];
    std::uint64_t count_ = 0;
};

class UTF8WriterImp final : public TextWriterImp {
public:
    using TextWriterImp::TextWriterImp;

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        return c.utf8(reinterpret_cast<char*>(destination), room);
    }
};

// A unit's low byte goes to the one place of its two, its high byte to the other.
template <unsigned int low, unsigned int high>
class UTF16WriterImp final : public TextWriterImp {
public:
    using TextWriterImp::TextWriterImp;

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        wchar_t units[2];
        std::size_t const count = c.wchars(units, room / 2);
        for (std::size_t i = 0; i < count; ++i) {
            destination[2 * i + low] = static_cast<unsigned char>(units[i] & 0xFF);
            destination[2 * i + high] = static_cast<unsigned char>(units[i] >> 8 & 0xFF);
        }
        return 2 * count;
    }
};
using UTF16leWriterImp = UTF16WriterImp<0, 1>;
using UTF16beWriterImp = UTF16WriterImp<1, 0>;

class MultibyteWriterImp final : public TextWriterImp {
public:
    using TextWriterImp::TextWriterImp;

protected:
    std::uint64_t encode(CodePoint c, unsigned char* destination, std::uint64_t room) const override {
        wchar_t units[2];
        int const count = static_cast<int>(c.wchars(units, 2));
        int const most = static_cast<int>(std::min<std::uint64_t>(room, 10));
        bool substituted = false;
        int const written =
            os::wideToMultibyteStrictly(units, count, reinterpret_cast<char*>(destination), most, substituted);
        return substituted ? 0 : static_cast<std::uint64_t>(written);
    }
};

class TextFileWriterImp final : public TextWriter {
public:
    TextFileWriterImp(std::unique_ptr<RawFileWriter> raw, std::unique_ptr<TextWriter> text) noexcept
        : raw_{std::move(raw)}, text_{std::move(text)} {}

    void write(std::wstring const& text) override { open().write(text); }
    void writeLine(std::wstring const& text) override { open().writeLine(text); }
    void flush() override { open().flush(); }

    void close() override {
        if (closed_) return;
        text_->close();
        closed_ = true;
        raw_->close();
    }

private:
    TextWriter& open() const {
        if (closed_) throw std::logic_error{"the text writer is closed"};
        return *text_;
    }

    std::unique_ptr<RawFileWriter> raw_;
    std::unique_ptr<TextWriter> text_;
    bool closed_ = false;
};

bool isEncoding(TextEncoding encoding) noexcept {
    int const value = static_cast<int>(encoding);
    return value >= encMultibyte && value <= encUTF16be;
}

}

TextWriter::TextWriter() = default;
TextWriter::~TextWriter() = default;

TextWriter* TextWriter::create(RawWriter& raw, TextEncoding encoding, bool writeBOM) {
    std::unique_ptr<TextWriter> writer;
    switch (encoding) {
        case encMultibyte: writer = std::make_unique<MultibyteWriterImp>(raw); break;
        case encUTF8: writer = std::make_unique<UTF8WriterImp>(raw); break;
        case encUTF16:
        case encUTF16le: writer = std::make_unique<UTF16leWriterImp>(raw); break;
        case encUTF16be: writer = std::make_unique<UTF16beWriterImp>(raw); break;
        default: return nullptr;
    }
    if (writeBOM && encoding != encMultibyte) writer->write(std::wstring(1, wchar_t{0xFEFF}));
    return writer.release();
}

TextWriter* TextWriter::create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding) {
    std::unique_ptr<RawFileWriter> raw;
    bool fresh = true;
    if (mode == textAppend) {
        raw.reset(rawAppend(filename));
        raw->seek(0, 0);
        unsigned char first[Signature::longest];
        if (std::int64_t const count = raw->read(first, sizeof first); count > 0) {
            raw->seek(0, 2);
            encoding = Signature::of(first, count).encoding;
            fresh = false;
        }
    } else if (isEncoding(encoding)) {
        raw.reset(rawCreate(filename));
    }
    if (!isEncoding(encoding)) return nullptr;
    std::unique_ptr<TextWriter> text{create(*raw, encoding, fresh)};
    return new TextFileWriterImp{std::move(raw), std::move(text)};
}

}
