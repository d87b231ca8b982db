#include "drawing/Program.h"

#include "drawing/CommandLine.h"
#include "drawing/System.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <stdexcept>

namespace drawing {

namespace {

/// One line, whatever a file name or a field holds.
void tell(std::wstring text) {
    std::replace_if(text.begin(), text.end(), isControl, L' ');
    writeError(text);
}

int fail(std::wstring const& text) {
    tell(text);
    return 1;
}

}

int runProgram(std::string const& name, int argc, char* const argv[],
               std::function<void(std::vector<std::wstring> const&)> const& body) {
    try {
        prepareOutput();
        body(arguments(argc, argv));
        return 0;
    } catch (CommandLineError const& error) {
        // The class derives from OrnError, so it must be caught first.
        fail(error.wWhat());
        return 2;
    } catch (ORN::OrnError const& error) {
        return fail(error.wWhat());
    } catch (std::bad_alloc const&) {
        return fail(utf8(name) + L": there is not enough memory");
    } catch (std::exception const& error) {
        // Texts of the standard library come in the system's code page; the programs' names are ASCII.
        return fail(utf8(name) + L": " + getWCS(error.what()));
    }
}

void complain(std::wstring const& what) { tell(what); }

void remark(std::string const& program, std::wstring const& file, std::wstring const& what) {
    tell(utf8(program) + L": " + (file == L"-" ? L"standard input" : file) + L": " + what);
}

void print(std::string const& text) {
    // Only flushing tells whether the system took the text: a full disk would otherwise go unnoticed.
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw std::runtime_error{"standard output cannot be written"};
    }
}

}
