#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Input.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// The names of a profile's inputs and the numbers that stand for them on the wire: the number that
// the profile gives, or the next one that is free.
class InputNames final {
public:
    // Reads "name" and "action". Call it for each input, in their order.
    void Read(ProfileTable& table);
    // To be called once, after the last.
    void NumberTheRest();

    struct Entry {
        std::string name;
        std::optional<tarnel::ActionId> action;
    };
    // The names in the order of their first use.
    const std::vector<Entry>& Entries() const { return entries; }
    // For each call of Read, the position of its name; empty where that is wrong.
    const std::vector<std::optional<std::size_t>>& Positions() const { return positions; }

private:
    std::optional<std::size_t> readName(ProfileTable& table);
    void giveAction(ProfileTable& table, std::size_t position, tarnel::ActionId action);

    std::vector<Entry> entries;
    std::vector<std::optional<std::size_t>> positions;
    std::map<std::string, std::size_t> positionOfName;
    std::map<tarnel::ActionId, std::size_t> positionOfAction;
};

// The text of "name", which heads a column. Empty, and a problem, when it cannot.
std::optional<std::string> readColumnName(ProfileTable& table);

} // namespace orvane::tool
