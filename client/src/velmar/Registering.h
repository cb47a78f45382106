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

// A dataref, or the name of a command.
template <typename T>
struct Numbered {
    wire::Number number = 0;
    const T* wanted = nullptr;
};

inline const std::string& nameOf(const Dataref& dataref) {
    return dataref.name;
}
inline const std::string& nameOf(const std::string& command) {
    return command;
}

// Split lists into parts that each fit into one request.
std::vector<Batch> batchesOf(std::span<const Dataref> datarefs);
std::vector<Batch> batchesOf(std::span<const std::string> commands);

// One request. Returns for each, in order, whether the simulator has it.
std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const Numbered<Dataref>> batch);
std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const Numbered<std::string>> batch);

// "registering a" or "registering a and 3 more".
std::string describe(const char* verb, std::string_view firstName, std::size_t count);

} // namespace orvane::velmar
