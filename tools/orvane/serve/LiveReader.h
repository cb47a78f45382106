#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/cli/ReconnectingClient.h"
#include "tools/orvane/command/CommandEvents.h"
#include "tools/orvane/datarefs/DatarefPoller.h"
#include "tools/orvane/serve/Hub.h"

namespace orvane::tool {

// Reads what the pages want from the simulator, as often as it answers but at most 60 times a
// second, and gives it to the hub, until an interrupt. Waits for a simulator that is not there.
class LiveReader final {
public:
    LiveReader(const GlobalOptions& globals, Hub& hub);

    void Run();

private:
    // A dataref's type and, for arrays, its size.
    using Type = std::pair<std::optional<velmar::Type>, std::uint32_t>;

    bool connect();
    void tell(const std::string& line);
    void step();
    void takeUnion();
    void unregisterAll();
    std::vector<std::string> registerCommands(const std::vector<std::string>& names);
    void read();
    static std::vector<Type> typesOf(const std::vector<DatarefArgument>& datarefs);

    const GlobalOptions& globals;
    Hub& hub;
    std::string told; // of the connection, so that each is said once
    std::optional<ReconnectingClient> client;
    std::optional<std::uint64_t> generation; // of the hub's union
    std::optional<DatarefPoller> poller;
    std::vector<std::string> registered; // datarefs
    std::vector<std::string> commands;
    std::vector<std::string> missing;
    CommandEvents events;
    std::uint64_t readings = 0;
    std::vector<Type> types; // that the hub knows
};

} // namespace orvane::tool
