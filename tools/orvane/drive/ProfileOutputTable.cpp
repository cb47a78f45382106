#include "tools/orvane/drive/ProfileOutputTable.h"

#include <cstdint>
#include <limits>
#include <string>

namespace orvane::tool {

namespace {

using tarnel::Output;

constexpr std::int64_t kLastElement = std::numeric_limits<std::int32_t>::max();
// The server ends the simulator if an answer exceeds 256 MiB; no array may come near that.
constexpr std::int64_t kMaxElements = 1'000'000;

Output datarefOutput(tarnel::OutputId id, const std::string& name, bool isFloat,
                     std::optional<std::int64_t> count, std::int64_t first) {
    if (!count) {
        return isFloat ? Output::ofFloat(id, name) : Output::ofInt(id, name);
    }
    const auto elements = static_cast<std::int32_t>(*count);
    const auto firstElement = static_cast<std::int32_t>(first);
    return isFloat ? Output::ofFloatArray(id, name, elements, firstElement)
                   : Output::ofIntArray(id, name, elements, firstElement);
}

std::optional<Output> readDataref(ProfileTable& table, tarnel::OutputId id) {
    const auto name = table.String("dataref");
    const auto type = readType(table);
    const auto count = table.Integer("count", 1, kMaxElements);
    const auto first = table.Integer("first", 0, kLastElement);
    if (table.Has("first") && !table.Has("count")) {
        table.AddProblemAt("first", "\"first\" needs \"count\", the number of elements from there");
    }
    std::optional<Output> output;
    if (name && type) {
        table.Try("dataref", [&] {
            output = datarefOutput(id, *name, *type == "float", count, first.value_or(0));
        });
    }
    return output;
}

std::optional<Output> readCommand(ProfileTable& table, tarnel::OutputId id) {
    table.Refuse({"type", "count", "first"}, "is for datarefs");
    const auto name = table.String("command");
    std::optional<Output> output;
    if (name) {
        table.Try("command", [&] { output = Output::ofCommand(id, *name); });
    }
    return output;
}

} // namespace

std::optional<Output> readProfileOutput(ProfileTable& table, tarnel::OutputId id) {
    std::optional<Output> output =
        isOnCommand(table) ? readCommand(table, id) : readDataref(table, id);
    table.RefuseUnknown();
    return output;
}

} // namespace orvane::tool
