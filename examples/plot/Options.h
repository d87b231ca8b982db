/// The command line of orn-plot.
#pragma once

#include "drawing/Page.h"

#include <string>
#include <vector>

namespace plot {

struct Options {
    bool help = false;
    drawing::PageSize size;
    drawing::View view;
    std::wstring drawing;
    std::wstring picture;
};

/// Throws ORN::OrnError with one line of text for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

extern char const* const usage;

}
