#include "velmar/Registering.h"

#include "ByteReader.h"
#include "ByteWriter.h"

namespace orvane::velmar {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;

template <typename T, typename Write>
std::vector<bool> exchange(detail::Connection& connection, const std::string& doing,
                           std::span<const Numbered<T>> batch, Write write,
                           bool (*readReply)(ByteReader&, wire::Number)) {
    ByteWriter request = wire::beginRequest();
    for (const auto& each : batch) {
        write(request, each.number, *each.wanted);
    }
    const Bytes answer =
        connection.exchange(request.bytes(), doing, batch.size() * wire::kLongestReply);
    ByteReader reader(answer);
    std::vector<bool> found;
    for (const auto& each : batch) {
        found.push_back(readReply(reader, each.number));
    }
    reader.expectEnd();
    return found;
}

} // namespace

std::vector<Batch> batchesOf(std::span<const Dataref> datarefs) {
    std::vector<Cost> costs;
    for (const Dataref& dataref : datarefs) {
        costs.push_back({wire::registerDatarefSize(dataref), wire::kLongestReply});
    }
    return cutIntoRequests(costs, kEmpty);
}

std::vector<Batch> batchesOf(std::span<const std::string> commands) {
    std::vector<Cost> costs;
    for (const std::string& name : commands) {
        costs.push_back({wire::registerCommandSize(name), wire::kLongestReply});
    }
    return cutIntoRequests(costs, kEmpty);
}

std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const Numbered<Dataref>> batch) {
    return exchange(connection, doing, batch, wire::writeRegisterDataref,
                    wire::readRegisterDatarefReply);
}

std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const Numbered<std::string>> batch) {
    return exchange(connection, doing, batch, wire::writeRegisterCommand,
                    wire::readRegisterCommandReply);
}

std::string describe(const char* verb, std::string_view firstName, std::size_t count) {
    std::string text = std::string(verb) + " " + std::string(firstName);
    if (count > 1) {
        text += " and " + std::to_string(count - 1) + " more";
    }
    return text;
}

} // namespace orvane::velmar
