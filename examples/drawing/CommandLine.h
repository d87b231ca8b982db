/// Command lines: options, help, the manual page and the shell's completion of each program.
#pragma once

#include "drawing/Page.h"

#include "orn/foundation/Error.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace drawing {

/// Says what is wrong with a command line. A program that ends with it has the exit status 2.
class CommandLineError : public ORN::OrnError {
public:
    CommandLineError(std::string const& program, std::wstring const& what);
};

struct Option {
    char const* name;   ///< without the two dashes
    char const* value;  ///< what its value is called in the help; null: it takes none
    char const* help;   ///< one line, or several
    std::function<void(std::wstring const&)> set;
};

/// Options may stand anywhere, as --name, --name value or --name=value. What follows -- is a name, and so is a single -.
/// Every program has the options --help (-h) and --version (-V) besides its own.
class CommandLine {
public:
    /// names stand behind the program's name in the line of usage. summary is one sentence without a full stop. The help
    /// prints above before the options and below after them.
    struct Texts {
        char const *names, *summary, *above, *below;
    };

    CommandLine(char const* program, Texts const& texts, std::vector<Option> options);

    /// Calls the functions of the options that are given, and returns the names. Throws CommandLineError for what it does
    /// not understand, and what the functions throw.
    std::vector<std::wstring> parse(std::vector<std::wstring> const& arguments);

    /// The text that --help, --version or another such option asks for; the program prints it and does nothing else.
    /// Empty when no such option was given.
    std::string const& answer() const noexcept { return answer_; }

    [[noreturn]] void fail(std::wstring const& what) const { throw CommandLineError{program_, what}; }

    // What options mean; they throw CommandLineError.
    double number(std::wstring const& option, std::wstring const& text) const;
    PageSize size(std::wstring const& text) const;         ///< like 480x360, of at most `longest` pixels a side
    std::uint32_t colour(std::wstring const& text) const;  ///< like #C04000, or black or white

private:
    std::string help() const;
    std::string manual() const;
    std::string completion() const;

    char const* program_;
    Texts texts_;
    std::vector<Option> options_;
    std::string answer_;
};

/// 0xRRGGBB of a text like #C04000; false for any other text.
bool parseColour(std::wstring const& text, std::uint32_t& rgb);

/// The finite number that the whole text is, to the nearest double; false, and value left alone, when it is none.
bool parseNumber(std::wstring_view text, double& value);

/// Two whole numbers with a separator between them, as in 480x360; false for any other text.
bool parsePair(std::wstring const& text, wchar_t separator, int& first, int& second);

}
