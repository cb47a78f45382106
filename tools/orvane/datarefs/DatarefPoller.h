#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/datarefs/DatarefReader.h"

namespace orvane::tool {

// Reads datarefs again and again, and says what has changed since the reading before. Watching,
// recording and serving share it. Borrows the client.
class DatarefPoller final {
public:
    enum class Types {
        Fixed, // found once, if at all
        Open,  // a dataref that has no type and is 0 is read as another type once a second
    };

    // Registers them.
    DatarefPoller(velmar::Client& client, std::vector<DatarefArgument> arguments, Types types);

    const DatarefReader& Datarefs() const { return reader; }
    void FindTypes() { reader.FindTypes(); }

    void Poll();
    // Of the last reading, in the order of the known datarefs.
    const std::vector<velmar::Value>& Values() const { return values; }
    // The indices of those that differ from the reading before; all of them after the first.
    const std::vector<std::size_t>& Changed() const { return changed; }

private:
    DatarefReader reader;
    const Types types;
    std::vector<velmar::Value> values;
    std::vector<std::size_t> changed;
    std::chrono::steady_clock::time_point guessedAt = std::chrono::steady_clock::now();
};

// The indices of the values that `after` does not share with `before`. NaN is the same as NaN.
std::vector<std::size_t> changesBetween(const std::vector<velmar::Value>& before,
                                        const std::vector<velmar::Value>& after);

} // namespace orvane::tool
