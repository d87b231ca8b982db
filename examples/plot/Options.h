/// The command line of orn-plot.
#pragma once

#include "drawing/Page.h"
#include "drawing/Picture.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace plot {

struct Options {
    std::string answer;  ///< to be printed instead of anything else, if there is something
    drawing::PageSize size;
    drawing::View view;
    std::wstring drawing;
    std::wstring picture;
    drawing::Format format = drawing::Format::png;
    std::set<std::wstring> layers;  ///< those that are drawn; empty: all that the drawing shows
    std::wstring table;             ///< a file, - for standard output; empty: none
    bool quiet = false;
    double tolerance = 0;
};

/// Throws drawing::CommandLineError for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

}
