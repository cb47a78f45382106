#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "tools/orvane/config/ConfigReport.h"

namespace orvane::tool::config {

// A line for every line of `file` that declares something or tries to, then one for every dataref
// that the plugin appends, and a summary. Names and texts from the file are not escaped.
std::vector<std::string> configAsLines(const ConfigReport& report, const std::string& file);

// The same as objects, without the summary. `configColumns` names their fields.
std::vector<nlohmann::ordered_json> configAsRecords(const ConfigReport& report,
                                                    const std::string& file);
std::vector<std::string> configColumns();

} // namespace orvane::tool::config
