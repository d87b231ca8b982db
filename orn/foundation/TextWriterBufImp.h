/// Hands the characters of a wide stream to a text writer.
#pragma once

#include "orn/text/CodePoint.h"
#include "orn/text/TextWriter.h"

#include <streambuf>
#include <string>
#include <utility>

namespace DebugStream {

/// Keeps nothing but a leading surrogate whose partner is to come, because a text writer takes only whole characters.
class TextWriterBuf final : public std::wstreambuf {
public:
    void setWriter(ORN::TextWriter* writer) noexcept { writer_ = writer; }  ///< not owned; null discards everything

protected:
    int_type overflow(int_type ch = traits_type::eof()) override {
        if (writer_ == nullptr || traits_type::eq_int_type(ch, traits_type::eof())) return 0;
        wchar_t const unit = traits_type::to_char_type(ch);
        if (leading_ == 0 && isSurrogateA(unit)) {
            leading_ = unit;
            return 0;
        }
        std::wstring text;
        if (leading_ != 0) text += std::exchange(leading_, L'\0');
        text += unit;
        writer_->write(text);
        return 0;
    }

    int sync() override {
        if (writer_ != nullptr) writer_->flush();
        return 0;
    }

private:
    ORN::TextWriter* writer_ = nullptr;
    wchar_t leading_ = 0;
};

}
