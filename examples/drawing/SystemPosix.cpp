#include "drawing/System.h"

#include "orn/text/Encoding.h"

#include <unistd.h>

namespace drawing {

std::vector<std::wstring> arguments(int argc, char* const argv[]) {
    std::vector<std::wstring> texts;
    for (int i = 1; i < argc; ++i) texts.push_back(getWCS(argv[i]));
    return texts;
}

std::filesystem::path pathOf(std::wstring const& name) { return getMBS(name); }

void prepareOutput() {}

bool errorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}
