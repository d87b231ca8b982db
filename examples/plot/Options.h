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
    std::string answer;  ///< if not empty, the program prints this text and does nothing else
    drawing::PageSize size;
    drawing::View view;
    std::wstring drawing;
    std::wstring picture;
    drawing::Format format = drawing::Format::png;
    std::set<std::wstring> layers;  ///< the layers that are drawn; empty: all that the drawing does not hide
    std::wstring table;             ///< the table's file; - for standard output; empty: no table
    bool quiet = false;
    double tolerance = 0;
};

/// Throws drawing::CommandLineError for what it does not understand.
Options parseOptions(std::vector<std::wstring> const& arguments);

}
