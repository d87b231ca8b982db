#include "drawing/Program.h"

#include "drawing/CommandLine.h"
#include "drawing/System.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <cstdio>
#include <new>
#include <stdexcept>

namespace drawing {

namespace {

void tell(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';  // one line, whatever a file name or a field holds
    }
    std::fprintf(stderr, "%s\n", text.c_str());
}

int fail(std::string const& text) {
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
        fail(utf8(error.wWhat()));
        return 2;
    } catch (ORN::OrnError const& error) {
        return fail(utf8(error.wWhat()));
    } catch (std::bad_alloc const&) {
        return fail(name + ": there is not enough memory");
    } catch (std::exception const& error) {
        return fail(name + ": " + error.what());
    }
}

void complain(std::wstring const& what) { tell(utf8(what)); }

void remark(std::string const& program, std::wstring const& file, std::wstring const& what) {
    tell(program + ": " + utf8(file == L"-" ? L"standard input" : file) + ": " + utf8(what));
}

void print(std::string const& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw std::runtime_error{"standard output cannot be written"};
    }
}

}
