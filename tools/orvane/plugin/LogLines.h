#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool::plugin {

// The pieces of a message around what differs each time; the first may be empty. "unknown action
// id(<number>)" has the pieces "unknown action id(" and ")".
using Pieces = std::vector<std::string>;

// What the page on troubleshooting says about some of the plugin's messages.
struct Explanation {
    std::vector<Pieces> messages{};
    std::string happened{};
    std::string why{};
    std::string toDo{};
};

// The rows of the page's tables of lines.
std::vector<Explanation> explanationsOn(std::string_view page);

// The closest explanation, also for a message that a line end cut off after its first piece. Null
// if the page does not have it. Borrows from `all`.
const Explanation* explanationOf(const std::vector<Explanation>& all, std::string_view message);

} // namespace orvane::tool::plugin
