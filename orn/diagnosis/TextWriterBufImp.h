/// Hands the characters of a wide stream to a text writer.
#pragma once

#include "orn/text/CodePoint.h"
#include "orn/text/RawFileImp.h"
#include "orn/text/TextWriter.h"
#include "orn/unicode/CodePoints.h"

#include <cstdint>
#include <exception>
#include <streambuf>
#include <string>
#include <utility>

namespace DebugStream {

/// A text writer takes only whole characters, so the buffer holds a leading surrogate until its partner comes, and nothing
/// else. A unit that is no character becomes U+FFFD; a character that the file's encoding lacks becomes a question mark.
///
/// No failure of the text writer reaches the stream, because the stream would stay bad. When the writer refuses a character,
/// the buffer drops the rest of the line. It tries again at the beginning of each later line and when the stream is flushed.
class TextWriterBuf final : public std::wstreambuf {
public:
    /// The caller goes on owning the writer. Without one (null) all text is discarded.
    void setWriter(ORN::TextWriter* writer) noexcept { writer_ = writer; }

    /// The exception of the first call that failed since the writer last worked, or null. Gives out each failure once.
    std::exception_ptr takeFailure() noexcept { return std::exchange(failure_, nullptr); }

protected:
    int_type overflow(int_type ch = traits_type::eof()) override {
        if (writer_ == nullptr || traits_type::eq_int_type(ch, traits_type::eof())) return 0;
        wchar_t const unit = traits_type::to_char_type(ch);
        auto const value = static_cast<unsigned int>(unit);
        wchar_t const leading = std::exchange(leading_, L'\0');
        if (leading != 0 && isSurrogateB(value)) {
            put({leading, unit});
            return 0;
        }
        if (leading != 0) put({replacement});
        if (isSurrogateA(value))
            leading_ = unit;
        else
            put({isSurrogateB(value) || value >= 0x110000 ? replacement : unit});
        return 0;
    }

    int sync() override {
        if (writer_ == nullptr) return 0;
        if (failing_) tryAgain();
        if (!failing_) attempt([this] { writer_->flush(); });
        return 0;
    }

private:
    static constexpr wchar_t replacement = 0xFFFD;

    void put(std::wstring const& character) {
        auto const value = static_cast<unsigned int>(character[0]);
        bool const begins = std::exchange(lineBegins_, ORN::isLineEnd(value));
        if (failing_ && begins) tryAgain();
        if (dropped_ == 0 && attempt([&] { write(character); })) return;
        if (dropped_++ == 0) lineCut_ = !begins;
    }

    // Only a character that the encoding lacks is replaced. A file that takes no more, or memory that is lacking, is a
    // failure, although the question mark, which is shorter, might still fit into the writer's buffer.
    void write(std::wstring const& character) {
        try {
            writer_->write(character);
        } catch (ORN::RawFileError const&) {
            throw;
        } catch (ORN::OrnError const&) {
            if (static_cast<unsigned int>(character[0]) < 0x80) throw;
            writer_->write(L"?");
        }
    }

    void tryAgain() {
        try {
            writer_->flush();
            if (dropped_ != 0)
                writer_->write((lineCut_ ? L"\n[" : L"[") + std::to_wstring(dropped_) + L" characters were dropped]\n");
            dropped_ = 0;
            failing_ = false;
        } catch (...) {}
    }

    template <typename Action>
    bool attempt(Action action) {
        try {
            action();
            return true;
        } catch (...) {
            if (!failing_) failure_ = std::current_exception();
            failing_ = true;
            return false;
        }
    }

    ORN::TextWriter* writer_ = nullptr;
    wchar_t leading_ = 0;
    bool failing_ = false;       // a call failed, and no flush has worked since
    bool lineBegins_ = true;     // the next character begins a line
    bool lineCut_ = false;       // the first dropped character stood inside a line
    std::uint64_t dropped_ = 0;  // number of characters dropped since the last notice
    std::exception_ptr failure_;
};

}
