/// Hands the characters of a wide stream to a text writer.
#pragma once

#include "orn/text/CodePoint.h"
#include "orn/text/TextWriter.h"
#include "orn/unicode/CodePoints.h"

#include <cstdint>
#include <exception>
#include <streambuf>
#include <string>
#include <utility>

namespace DebugStream {

/// Keeps nothing but a leading surrogate whose partner is to come, because a text writer takes only whole characters. What
/// is none becomes U+FFFD, and what the file's encoding lacks a question mark.
///
/// No failure of the text writer reaches the stream, which would be bad from then on. What the writer refuses is dropped to
/// the end of its line; at the beginning of each later line, and when the stream is flushed, the buffer tries again.
class TextWriterBuf final : public std::wstreambuf {
public:
    void setWriter(ORN::TextWriter* writer) noexcept { writer_ = writer; }  ///< not owned; null discards everything

    /// What the first call threw that failed since the writer last did its work; each failure is given out once.
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

    void write(std::wstring const& character) try { writer_->write(character); } catch (...) {
        if (static_cast<unsigned int>(character[0]) < 0x80) throw;
        writer_->write(L"?");
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
    bool failing_ = false;       // since the last call of the writer that is known to have reached the file
    bool lineBegins_ = true;     // the next character begins a line
    bool lineCut_ = false;       // what was dropped began in the midst of one
    std::uint64_t dropped_ = 0;  // how many characters
    std::exception_ptr failure_;
};

}
