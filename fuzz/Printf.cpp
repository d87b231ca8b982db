// A format is read by the rules of the Windows runtime and filled with known arguments: numbers as the C library writes
// them, texts unit by unit; a bad format comes back as it is.
#include "orn/text/Printf.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>

namespace {

std::size_t const mostArguments = 4;
int const longest = 3000;

wchar_t const wideText[] = {L'w', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xDC00, 0};
char const narrowText[] = "n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x80.";
wchar_t const narrowAsWide[] = {L'n', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xFFFD, L'.', 0};

struct Argument {
    enum Kind { integer32, integer64, number, pointer } kind;
    int integer = 0;
    std::int64_t wide = 0;
    double real = 0;
    void const* address = nullptr;
};

std::int64_t const integers[] = {0,           1,       -1,      42,           -5,        255,      8,
                                 65536 + 200, INT_MAX, INT_MIN, 0x1234567890, INT64_MAX, INT64_MIN};
double const numbers[] = {0.0, -0.0, 0.5, 1, 2.5, -1.5, 3.14159, 1e-5, 99999.5, 1e15, 1e300, 1.5e-310, HUGE_VAL, NAN};

// Reads a format, choosing the arguments, and writes what is to come of it.
class Formatter {
public:
    Formatter(std::wstring const& format, fuzz::Input& input) : rest_{format}, input_{input} {}

    std::vector<Argument> arguments;
    std::wstring result;
    bool bad = false;
    bool tooMuch = false;  // for this target, not for the library

    void run() {
        while (!rest_.empty() && !bad && !tooMuch) {
            if (!take(L'%'))
                result += next();
            else if (take(L'%'))
                result += L'%';
            else
                conversion();
        }
    }

private:
    wchar_t next() {
        wchar_t const unit = rest_.empty() ? wchar_t{0} : rest_[0];
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return unit;
    }
    bool take(std::wstring_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }
    bool take(wchar_t unit) { return take(std::wstring_view{&unit, 1}); }

    Argument const& add(Argument::Kind kind) {
        Argument& argument = arguments.emplace_back();
        argument.kind = kind;
        argument.wide = integers[input_.option(std::size(integers))];
        argument.integer = static_cast<int>(argument.wide);
        argument.real = numbers[input_.option(std::size(numbers))];
        tooMuch = tooMuch || arguments.size() > mostArguments;
        return argument;
    }

    std::optional<int> size() {
        if (take(L'*')) {
            Argument& argument = arguments.emplace_back();
            argument.kind = Argument::integer32;
            argument.integer = static_cast<int>(input_.option(40)) - 10;
            tooMuch = tooMuch || arguments.size() > mostArguments;
            return argument.integer;
        }
        if (rest_.empty() || rest_[0] < L'0' || rest_[0] > L'9') return std::nullopt;
        double value = 0;
        while (!rest_.empty() && rest_[0] >= L'0' && rest_[0] <= L'9') value = value * 10 + (next() - L'0');
        if (value > INT_MAX)
            bad = true;
        else if (value > longest)
            tooMuch = true;
        return bad || tooMuch ? 0 : static_cast<int>(value);
    }

    void conversion() {
        flags_.clear();
        width_ = 0;
        precision_.reset();
        for (bool more = true; more;) {
            more = false;
            for (wchar_t const flag : {L'-', L'+', L' ', L'#', L'0'})
                if (take(flag)) {
                    flags_ += static_cast<char>(flag);
                    more = true;
                }
        }
        if (auto const width = size()) {
            width_ = *width < 0 ? -*width : *width;
            if (*width < 0) flags_ += '-';
        }
        if (bad) return;
        if (take(L'.')) {
            precision_ = size().value_or(0);
            if (*precision_ < 0) precision_.reset();
        }
        if (bad) return;

        std::wstring_view prefix;
        for (std::wstring_view const known :
             {L"hh", L"h", L"ll", L"l", L"w", L"L", L"I64", L"I32", L"I", L"z", L"t", L"j"})
            if (take(known)) {
                prefix = known;
                break;
            }
        wchar_t const type = next();
        auto const among = [](wchar_t unit, std::wstring_view units) {
            return unit != 0 && units.find(unit) != units.npos;
        };
        auto const prefixed = [&](std::initializer_list<std::wstring_view> known) {
            return std::find(known.begin(), known.end(), prefix) != known.end();
        };
        if (among(type, L"diouxX") && !prefixed({L"w", L"L"}))
            putInteger(type, prefixed({L"hh"})                                   ? 8
                             : prefixed({L"h"})                                  ? 16
                             : prefixed({L"ll", L"I64", L"I", L"z", L"t", L"j"}) ? 64
                                                                                 : 32);
        else if (among(type, L"eEfFgGaA") && prefixed({L"", L"l", L"L"}))
            putNumber(type);
        else if (type == L'p' && prefixed({L""}))
            putPointer();
        else if (among(type, L"cCsS") && prefixed({L"", L"h", L"l", L"w"}))
            putText(type, prefixed({L"h"}) ? false : prefixed({L"l", L"w"}) ? true : among(type, L"cs"));
        else
            bad = true;
    }

    template <typename T>
    void print(std::string const& prefixAndType, T value) {
        char text[2 * longest];
        int const length =
            precision_ ? std::snprintf(text, sizeof text, ("%" + flags_ + "*.*" + prefixAndType).c_str(), width_,
                                       *precision_, value)
                       : std::snprintf(text, sizeof text, ("%" + flags_ + "*" + prefixAndType).c_str(), width_, value);
        result.append(text, text + length);
    }

    void putInteger(wchar_t type, int bits) {
        Argument const argument = add(bits == 64 ? Argument::integer64 : Argument::integer32);
        std::int64_t const whole = bits == 64 ? argument.wide : argument.integer;
        bool const isSigned = type == L'd' || type == L'i';
        std::uint64_t const cut = static_cast<std::uint64_t>(whole) << (64 - bits);
        std::int64_t const value =
            isSigned ? static_cast<std::int64_t>(cut) >> (64 - bits) : static_cast<std::int64_t>(cut >> (64 - bits));
        print(std::string{"ll"} + static_cast<char>(type), value);
    }

    void putNumber(wchar_t type) { print(std::string(1, static_cast<char>(type)), add(Argument::number).real); }

    void putPointer() {
        Argument& argument = const_cast<Argument&>(add(Argument::pointer));
        argument.address = reinterpret_cast<void const*>(argument.wide);
        precision_ = 16;
        print("llX", argument.wide);
    }

    void putText(wchar_t type, bool wide) {
        std::wstring text;
        if (type == L'c' || type == L'C') {
            Argument const argument = add(Argument::integer32);
            unsigned int const unit = static_cast<unsigned int>(argument.integer);
            unsigned int const byte = unit & 0xFF;
            text = static_cast<wchar_t>(wide ? unit & 0xFFFF : byte < 0x80 ? byte : 0xFFFD);
        } else {
            Argument& argument = const_cast<Argument&>(add(Argument::pointer));
            argument.address = wide ? static_cast<void const*>(wideText) : narrowText;
            if (argument.integer == -1) argument.address = nullptr;
            text = argument.address == nullptr ? L"(null)" : wide ? wideText : narrowAsWide;
            if (precision_ && static_cast<std::size_t>(*precision_) < text.size()) {
                text.resize(static_cast<std::size_t>(*precision_));
                // What the narrow text has as one character is not cut.
                if (!wide && !text.empty() && text.back() == wchar_t{0xD83D}) text.pop_back();
            }
        }
        std::size_t const width = static_cast<std::size_t>(width_);
        std::size_t const padding = width > text.size() ? width - text.size() : 0;
        auto const has = [&](char flag) { return flags_.find(flag) != std::string::npos; };
        if (has('-'))
            result += text + std::wstring(padding, L' ');
        else
            result += std::wstring(padding, has('0') ? L'0' : L' ') + text;
    }

    std::wstring_view rest_;
    fuzz::Input& input_;
    std::string flags_;
    int width_ = 0;
    std::optional<int> precision_;
};

// Hands the arguments over, each as its type.
template <typename... Given>
std::wstring format(wchar_t const* text, std::span<Argument const> arguments, Given... given) {
    if (arguments.empty()) return stringPrintf(text, given...);
    if constexpr (sizeof...(given) < mostArguments) {
        Argument const& first = arguments[0];
        auto const rest = arguments.subspan(1);
        switch (first.kind) {
            case Argument::integer32: return format(text, rest, given..., first.integer);
            case Argument::integer64: return format(text, rest, given..., first.wide);
            case Argument::number: return format(text, rest, given..., first.real);
            case Argument::pointer: return format(text, rest, given..., first.address);
        }
    }
    return {};
}

}

ORN_LAW(Printf) {
    Input values = input.last(8);
    std::wstring text = input.text();
    text.resize(std::min(text.find(L'\0'), text.size()));
    Formatter formatter{text, values};
    formatter.run();
    if (formatter.tooMuch) return;
    Exact<wchar_t> const block{text + L'\0'};
    if (formatter.bad)
        same("a bad format comes back", stringPrintf(block.data()), text);
    else
        same("formatted", format(block.data(), std::span<Argument const>{formatter.arguments}), formatter.result);
}
