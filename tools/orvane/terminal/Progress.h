#pragma once

#include <cstddef>
#include <string>

namespace orvane::tool {

// "12.3 s, 246 rows, 20.0 rows/s, 5.1 kB": the progress of a file of rows.
std::string progressText(double seconds, std::size_t rows, std::size_t bytes);

// "1 row", "2 rows".
std::string rowsText(std::size_t rows);

// "999 bytes", "5.1 kB", "2.0 MB".
std::string sizeText(std::size_t bytes);

} // namespace orvane::tool
