#pragma once

#include <span>
#include <string_view>

namespace orvane::tool {

// A file of the page, which the build has put into this program.
struct PageFile {
    std::string_view path; // "/plot.js"
    std::string_view type;
    std::string_view text;
};

std::span<const PageFile> pageFiles();

} // namespace orvane::tool
