#include "velmar/Registering.h"

#include "ByteReader.h"
#include "ByteWriter.h"

namespace orvane::velmar {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;

constexpr Cost kBase{.request = wire::kIdentificationSize, .answer = 4};

} // namespace

std::vector<Batch> batchesOf(std::span<const Dataref> datarefs) {
    std::vector<Cost> costs;
    for (const Dataref& dataref : datarefs) {
        costs.push_back({wire::registerDatarefSize(dataref), wire::kLongestReply});
    }
    return cutIntoRequests(costs, kBase);
}

std::vector<Batch> batchesOf(std::span<const std::string> commands) {
    std::vector<Cost> costs;
    for (const std::string& name : commands) {
        costs.push_back({wire::registerCommandSize(name), wire::kLongestReply});
    }
    return cutIntoRequests(costs, kBase);
}

std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const NumberedDataref> batch) {
    ByteWriter request;
    wire::writeIdentification(request);
    for (const NumberedDataref& each : batch) {
        wire::writeRegisterDataref(request, each.number, *each.dataref);
    }
    const Bytes answer =
        connection.exchange(request.bytes(), doing, batch.size() * wire::kLongestReply);
    ByteReader reader(answer);
    std::vector<bool> found;
    for (const NumberedDataref& each : batch) {
        found.push_back(wire::readRegisterDatarefReply(reader, each.number));
    }
    reader.expectEnd();
    return found;
}

std::vector<bool> registerOn(detail::Connection& connection, const std::string& doing,
                             std::span<const NumberedCommand> batch) {
    ByteWriter request;
    wire::writeIdentification(request);
    for (const NumberedCommand& each : batch) {
        wire::writeRegisterCommand(request, each.number, each.name);
    }
    const Bytes answer =
        connection.exchange(request.bytes(), doing, batch.size() * wire::kLongestReply);
    ByteReader reader(answer);
    std::vector<bool> found;
    for (const NumberedCommand& each : batch) {
        found.push_back(wire::readRegisterCommandReply(reader, each.number));
    }
    reader.expectEnd();
    return found;
}

std::string deed(const char* verb, std::string_view firstName, std::size_t count) {
    std::string text = std::string(verb) + " " + std::string(firstName);
    if (count > 1) {
        text += " and " + std::to_string(count - 1) + " more";
    }
    return text;
}

} // namespace orvane::velmar
