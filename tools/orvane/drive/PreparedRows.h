#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "tools/orvane/drive/IInputSource.h"

namespace orvane::tool {

// Rows that were read, and found to be right, beforehand. None at all: an end at once.
class PreparedRows final : public IInputSource {
public:
    explicit PreparedRows(std::vector<InputRow> preparedRows) : rows(std::move(preparedRows)) {}

    std::optional<InputRow> Next(double /*seconds*/) override {
        return next < rows.size() ? std::optional(rows[next++]) : std::nullopt;
    }

private:
    const std::vector<InputRow> rows;
    std::size_t next = 0;
};

} // namespace orvane::tool
