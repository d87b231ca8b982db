/// The command line of orn-view.
#pragma once

#include "drawing/Page.h"

#include <string>
#include <vector>

namespace view {

struct Options {
    std::string answer;  ///< if not empty, the program prints this text and does nothing else
    drawing::PageSize size{480, 360};
    std::wstring script;  ///< the script's file; empty when there is none
    std::wstring log;     ///< the file of the record; empty when there is none
    bool quiet = false;
    std::vector<std::wstring> drawings;
};

/// Throws drawing::CommandLineError for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

}
