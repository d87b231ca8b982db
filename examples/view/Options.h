/// The command line of orn-view.
#pragma once

#include "drawing/Page.h"

#include <string>
#include <vector>

namespace view {

struct Options {
    std::string answer;  ///< to be printed instead of anything else, if there is something
    drawing::PageSize size{480, 360};
    std::wstring script;  ///< empty: none
    std::wstring log;     ///< empty: none
    bool quiet = false;
    std::vector<std::wstring> drawings;
};

/// Throws drawing::CommandLineError for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

}
