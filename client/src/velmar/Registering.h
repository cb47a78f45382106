#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Connection.h"
#include "orvane/velmar/Client.h"
#include "velmar/Batches.h"
#include "velmar/Wire.h"

namespace orvane::velmar {

struct NumberedDataref {
    wire::Number number = 0;
    const Dataref* dataref = nullptr;
};

struct NumberedCommand {
    wire::Number number = 0;
    std::string_view name;
};

// Cut lists into parts that fit into one request each.
std::vector<Batch> batchesOf(std::span<const Dataref> datarefs);
std::vector<Batch> batchesOf(std::span<const std::string> commands);

// One request. Returns for each, in order, whether the simulator has it.
std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const NumberedDataref> batch);
std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const NumberedCommand> batch);

// "registering a" or "registering a and 3 more".
std::string deed(const char* verb, std::string_view firstName, std::size_t count);

} // namespace orvane::velmar
