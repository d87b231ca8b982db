/// The groups of a DXF file: a whole number, the code, and a value on the line below it.
#pragma once

#include "orn/text/RawFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace drawing::dxf {

/// Reads groups one after the other, from anything that has bytes. Values are kept as bytes; what they mean as text
/// depends on the header of the file. Every failure is an ORN::OrnError "FILE:LINE: what is wrong".
class Groups {
public:
    /// The reader must outlive the object.
    explicit Groups(ORN::RawReader& raw) : raw_{raw}, buffer_(1 << 16) {}

    /// Goes to the next group; comments (code 999) are left out. Fails at the end of the input, which no DXF file
    /// reaches before its group 0 EOF.
    void next();

    /// The next call of next() gives the present group once more.
    void putBack() noexcept { putBack_ = true; }

    int code() const noexcept { return code_; }
    std::string const& text() const noexcept { return text_; }  ///< without blanks around it
    bool is(int code, char const* text) const { return code_ == code && text_ == text; }
    double number() const;  ///< fails for a value that is not a finite number
    int integer() const;    ///< fails for a value that is not a whole number of 32 bits

    std::uint64_t line() const noexcept { return groupLine_; }  ///< of the present group's value
    [[noreturn]] void fail(std::wstring const& what) const { fail(groupLine_, what); }
    [[noreturn]] void fail(std::uint64_t line, std::wstring const& what) const;

private:
    bool readLine();
    bool fill();
    void readCode();

    ORN::RawReader& raw_;
    std::vector<char> buffer_;
    std::size_t at_ = 0, end_ = 0;
    std::uint64_t line_ = 0, groupLine_ = 0;
    bool afterReturn_ = false;
    bool putBack_ = false;
    int code_ = 0;
    std::string text_;
};

/// A piece of the file for a message: in quotes, cut to 40 bytes, with other characters than printable ASCII replaced.
std::wstring quoted(std::string const& text);

}
