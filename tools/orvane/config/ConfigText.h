#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "tools/orvane/config/ConfigReport.h"

namespace orvane::tool::config {

// A line for every line of `file` that declares something or tries to, then one for every dataref
// that the plugin appends, and a summary. Names and texts of the file are in them as they are.
std::vector<std::string> configAsLines(const ConfigReport& report, const std::string& file);

// The same without the summary, as objects. `configColumns` are the names of their fields.
std::vector<nlohmann::ordered_json> configAsRecords(const ConfigReport& report,
                                                    const std::string& file);
std::vector<std::string> configColumns();

} // namespace orvane::tool::config
