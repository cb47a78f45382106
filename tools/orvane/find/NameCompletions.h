#pragma once

#include <string>

namespace orvane::tool {

// What a shell offers for the beginning of a dataref's or command's name, from the lists of the
// installed simulator: the next part of the name with its "/", as for files, or the whole name with
// a tab and its description. One line each; none without lists.
//
// `kind` is the type name of the argument: "DATAREF", "DATAREF=VALUE" (names then end with "=") or
// "SIMCOMMAND"; there are none for others.
std::string nameCompletions(const std::string& kind, const std::string& begin);

} // namespace orvane::tool
