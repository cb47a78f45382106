#include "tools/orvane/drive/InputNames.h"

#include <limits>

#include <fmt/core.h>

#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

namespace {

constexpr std::int64_t kMaxActions = std::numeric_limits<tarnel::ActionId>::max();
constexpr tarnel::ActionId kFirstAction = 1;
// The server runs the commands of these twice, so they are never assigned automatically.
constexpr tarnel::ActionId kFirstDoubled = 1002;
constexpr tarnel::ActionId kLastDoubled = 1005;

} // namespace

std::optional<std::string> readColumnName(ProfileTable& table) {
    std::optional<std::string> name = table.String("name");
    if (!table.Has("name")) {
        table.AddProblem("\"name\" is missing");
    }
    if (!name) {
        return std::nullopt;
    }
    if (name->empty() || *name == "time" || *name == kAircraftId) {
        table.AddProblemAt("name", fmt::format("\"{}\" cannot be a name", *name));
        return std::nullopt;
    }
    if (hasControls(*name)) {
        table.AddProblemAt("name", "a name cannot contain control characters");
        return std::nullopt;
    }
    return name;
}

void InputNames::Read(ProfileTable& table) {
    const std::optional<std::size_t> position = readName(table);
    positions.push_back(position);
    const auto action = table.Integer("action", 0, kMaxActions);
    if (position && action) {
        assignAction(table, *position, static_cast<tarnel::ActionId>(*action));
    }
}

std::optional<std::size_t> InputNames::readName(ProfileTable& table) {
    const std::optional<std::string> name = readColumnName(table);
    if (!name) {
        return std::nullopt;
    }
    const auto [found, isNew] = positionOfName.emplace(*name, entries.size());
    if (isNew) {
        entries.push_back({*name, std::nullopt});
    }
    return found->second;
}

void InputNames::assignAction(ProfileTable& table, std::size_t position, tarnel::ActionId action) {
    Entry& entry = entries[position];
    if (entry.action && entry.action != action) {
        table.AddProblemAt("action",
                           fmt::format("\"{}\" already has action {}", entry.name, *entry.action));
        return;
    }
    const auto [found, isNew] = positionOfAction.emplace(action, position);
    if (!isNew && found->second != position) {
        table.AddProblemAt("action", fmt::format("action {} already belongs to \"{}\"", action,
                                                 entries[found->second].name));
        return;
    }
    entry.action = action;
}

void InputNames::AssignFreeNumbers() {
    tarnel::ActionId next = kFirstAction;
    for (Entry& entry : entries) {
        if (entry.action) {
            continue;
        }
        while (positionOfAction.contains(next) || (next >= kFirstDoubled && next <= kLastDoubled)) {
            ++next;
        }
        entry.action = next++;
    }
}

} // namespace orvane::tool
