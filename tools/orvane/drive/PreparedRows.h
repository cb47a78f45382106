#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "tools/orvane/drive/IInputSource.h"

namespace orvane::tool {

// Rows that were read and checked beforehand.
class PreparedRows final : public IInputSource {
public:
    explicit PreparedRows(std::vector<InputRow> rows) : rows(std::move(rows)) {}

    std::optional<InputRow> Next(double /*seconds*/) override {
        return next < rows.size() ? std::optional(rows[next++]) : std::nullopt;
    }

private:
    const std::vector<InputRow> rows;
    std::size_t next = 0;
};

} // namespace orvane::tool
