#include "drawing/System.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <fcntl.h>
#include <io.h>
#include <cstdio>
#include <memory>

#include <windows.h>

#include <shellapi.h>

namespace drawing {

namespace {

// It is set when the console is given up: from then on standard error leads nowhere.
bool showsBoxes = false;

/// The system gives a console mode for consoles only, not for files and pipes.
bool isConsole(DWORD stream) {
    DWORD mode;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}

std::vector<std::wstring> arguments(int, char* const[]) {
    struct Free {
        void operator()(wchar_t** texts) const { LocalFree(texts); }
    };
    int count = 0;
    // main's arguments have been converted to the system's code page, which lacks many characters of file names.
    std::unique_ptr<wchar_t*, Free> const texts{CommandLineToArgvW(GetCommandLineW(), &count)};
    if (texts == nullptr) throw WinError{L"CommandLineToArgvW", GetLastError()};
    return {texts.get() + 1, texts.get() + count};
}

std::filesystem::path pathOf(std::wstring const& name) { return name; }

std::wstring nameOf(std::filesystem::path const& path) { return path.wstring(); }

void prepareOutput() {
    SetConsoleOutputCP(CP_UTF8);
    // In text mode the runtime would write CR LF for each LF, also into pictures, and would end the input at a Ctrl-Z.
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

std::wstring fromCodePage(std::string const& bytes, unsigned int codePage) {
    int const size = static_cast<int>(bytes.size());
    // The number is 0 for an unknown page and for bytes that are not valid; the second call then writes nothing.
    int const units = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), units);
    return text;
}

void leaveOwnConsole() {
    DWORD process;
    if (GetConsoleProcessList(&process, 1) != 1) return;  // none, or that of the shell, too
    // This is asked before the console goes: afterwards no stream is a terminal.
    showsBoxes = errorIsTerminal();
    FreeConsole();
}

void writeError(std::wstring const& line) {
    if (showsBoxes) {
        MessageBoxW(nullptr, line.c_str(), nullptr, MB_OK | MB_ICONWARNING);
    } else {
        std::fprintf(stderr, "%s\n", utf8(line).c_str());
    }
}

bool outputIsTerminal() { return isConsole(STD_OUTPUT_HANDLE); }

bool errorIsTerminal() { return isConsole(STD_ERROR_HANDLE); }

}
