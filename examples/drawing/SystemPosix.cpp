#include "drawing/System.h"

#include "orn/text/Encoding.h"

#include <iconv.h>
#include <unistd.h>
#include <cstdio>

namespace drawing {

std::vector<std::wstring> arguments(int argc, char* const argv[]) {
    std::vector<std::wstring> texts;
    for (int i = 1; i < argc; ++i) texts.push_back(getWCS(argv[i]));
    return texts;
}

std::filesystem::path pathOf(std::wstring const& name) { return getMBS(name); }

std::wstring nameOf(std::filesystem::path const& path) { return getWCS(path.string()); }

// Streams do not change bytes here.
void prepareOutput() {}

std::wstring fromCodePage(std::string const& bytes, unsigned int codePage) {
    // The system's names of the pages. The Windows numbers of ISO 8859-1 and its successors count from 28591.
    std::string const page = codePage == 10000                      ? "MACINTOSH"
                             : codePage == 1361                     ? "JOHAB"
                             : codePage > 28590 && codePage < 28606 ? "ISO-8859-" + std::to_string(codePage - 28590)
                                                                    : "CP" + std::to_string(codePage);
    iconv_t const converter = iconv_open("UTF-8", page.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return {};
    // A byte stands for one character at most, which takes four bytes of UTF-8 at most: the output always has room.
    std::string in = bytes, out(bytes.size() * 4, '\0');
    char *from = in.data(), *to = out.data();
    std::size_t inLeft = in.size(), outLeft = out.size();
    // Bytes that are not valid end the conversion with an error, and so does a character that lacks its last byte. The
    // second call writes a letter that was held back because the next one might have combined with it.
    std::size_t const failed = static_cast<std::size_t>(-1);
    bool const good = iconv(converter, &from, &inLeft, &to, &outLeft) != failed &&
                      iconv(converter, nullptr, nullptr, &to, &outLeft) != failed;
    iconv_close(converter);
    out.resize(out.size() - outLeft);
    return good ? utf8(out) : std::wstring{};
}

void leaveOwnConsole() {}

void writeError(std::wstring const& line) { std::fprintf(stderr, "%s\n", utf8(line).c_str()); }

bool outputIsTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool errorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}
