/// The command line of orn-view.
#pragma once

#include "drawing/Page.h"

#include <string>
#include <vector>

namespace view {

struct Options {
    bool help = false;
    drawing::PageSize size{480, 360};
    std::wstring script;  ///< empty: none
    std::wstring log;     ///< empty: none
    std::vector<std::wstring> drawings;
};

/// Throws ORN::OrnError with one line of text for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

extern char const* const usage;

/// Two whole numbers with a separator between them, as in 480x360; false for any other text.
bool parsePair(std::wstring const& text, wchar_t separator, int& first, int& second);

}
