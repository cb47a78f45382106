#pragma once

#include <optional>
#include <string>

#include "tools/orvane/record/Recording.h"

namespace orvane::tool {

// Reads a recording: the text of a flight data recorder if the name ends in .fdr, else CSV; "-" is
// standard input. Says on standard error what is skipped, and what is wrong; then the result is
// empty. Failure: the file cannot be read.
std::optional<Recording> readRecordingFile(const std::string& path);

} // namespace orvane::tool
