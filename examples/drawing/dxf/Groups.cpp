#include "drawing/dxf/Groups.h"

#include "drawing/CommandLine.h"

#include "orn/foundation/Error.h"
#include "orn/text/Numbers.h"

#include <algorithm>

namespace drawing::dxf {

namespace {

// Longer ones hold nothing that is drawn; what is behind is left out.
constexpr std::size_t longestLine = 4096;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\0'; }

/// The digits of a number as the library reads them; empty when there are too many to be one.
std::wstring wide(std::string const& text) {
    return text.size() <= 400 ? std::wstring{text.begin(), text.end()} : std::wstring{};
}

}

std::wstring quoted(std::string const& text) {
    std::wstring shown;
    for (char const c : text.substr(0, 40)) shown += c >= ' ' && c <= '~' ? static_cast<wchar_t>(c) : L'?';
    return L"'" + shown + (text.size() > 40 ? L"...'" : L"'");
}

void Groups::fail(std::uint64_t line, std::wstring const& what) const {
    throw ORN::OrnError{raw_.name() + L":" + std::to_wstring(line) + L": " + what};
}

bool Groups::fill() {
    at_ = 0;
    end_ = static_cast<std::size_t>(raw_.read(buffer_.data(), buffer_.size()));
    return end_ != 0;
}

/// The next line goes to text_. Lines end at LF, CR LF or CR.
///
/// The library's TextReader does not serve here. It must know the encoding before the first line, and a DXF file names its
/// own in the header. It also ends lines at FF and NEL, which may be bytes of a name in some code pages.
bool Groups::readLine() {
    text_.clear();
    if (at_ == end_ && !fill()) return false;
    if (afterReturn_ && buffer_[at_] == '\n') ++at_;
    afterReturn_ = false;
    if (at_ == end_ && !fill()) return false;
    for (;;) {
        char const* const from = buffer_.data() + at_;
        char const* const to = buffer_.data() + end_;
        char const* const stop = std::find_if(from, to, [](char c) { return c == '\n' || c == '\r'; });
        text_.append(from, std::min(static_cast<std::size_t>(stop - from), longestLine - text_.size()));
        at_ = static_cast<std::size_t>(stop - buffer_.data());
        if (stop != to) {
            afterReturn_ = *stop == '\r';
            ++at_;
            break;
        }
        if (!fill()) break;
    }
    ++line_;
    while (!text_.empty() && isBlank(text_.back())) text_.pop_back();
    text_.erase(0, std::min(text_.find_first_not_of(" \t"), text_.size()));
    return true;
}

void Groups::readCode() {
    bool more = readLine();
    if (line_ == 1) {
        if (text_.find("Binary DXF") != std::string::npos) fail(1, L"a binary DXF file cannot be read, only ASCII DXF");
        if (text_.starts_with("\xFF\xFE") || text_.starts_with("\xFE\xFF")) fail(1, L"a DXF file is not UTF-16");
        if (text_.starts_with("\xEF\xBB\xBF")) text_.erase(0, 3);
    }
    // Blank lines at the end of a file are common, between groups they are an error.
    while (more && text_.empty() && line_ == 1) more = readLine();
    if (!more) fail(line_, L"the file ends before the group 0 EOF");
    LONG code = 0;
    std::wstring const digits = wide(text_);
    if (!isLong(&code, digits.data(), digits.size()) || code < -5 || code > 1071) {
        fail(line_, quoted(text_) + L" is not a group code of DXF");
    }
    code_ = static_cast<int>(code);
}

void Groups::next() {
    if (putBack_) {
        putBack_ = false;
        return;
    }
    do {
        readCode();
        if (!readLine()) fail(line_, L"the value of the last group is missing");
    } while (code_ == 999);
    groupLine_ = line_;
}

double Groups::number() const {
    double value = 0;
    std::wstring const digits = wide(text_);
    if (!parseNumber(digits, value)) {
        fail(L"group " + std::to_wstring(code_) + L": " + quoted(text_) + L" is not a number");
    }
    return value;
}

int Groups::integer() const {
    LONG value = 0;
    std::wstring const digits = wide(text_);
    if (!isLong(&value, digits.data(), digits.size())) {
        fail(L"group " + std::to_wstring(code_) + L": " + quoted(text_) + L" is not a whole number");
    }
    return static_cast<int>(value);
}

}
