#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Input.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// The names of a profile's inputs and their numbers on the wire: the number that the profile gives,
// or the next free one.
class InputNames final {
public:
    // Reads "name" and "action". Call it for each input, in order.
    void Read(ProfileTable& table);
    // Call once, after the last input.
    void AssignFreeNumbers();

    struct Entry {
        std::string name;
        std::optional<tarnel::ActionId> action;
    };
    // The names in the order of their first use.
    const std::vector<Entry>& Entries() const { return entries; }
    // For each call of Read, the position of its name; empty if the name is invalid.
    const std::vector<std::optional<std::size_t>>& Positions() const { return positions; }

private:
    std::optional<std::size_t> readName(ProfileTable& table);
    void assignAction(ProfileTable& table, std::size_t position, tarnel::ActionId action);

    std::vector<Entry> entries;
    std::vector<std::optional<std::size_t>> positions;
    std::map<std::string, std::size_t> positionOfName;
    std::map<tarnel::ActionId, std::size_t> positionOfAction;
};

// Reads "name", which heads a column. Adds a problem and returns nothing if it is invalid.
std::optional<std::string> readColumnName(ProfileTable& table);

} // namespace orvane::tool
