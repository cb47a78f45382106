#include "tools/orvane/find/PresentValues.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/datarefs/DatarefReader.h"

namespace orvane::tool {

namespace {

using Datarefs = std::vector<velmar::Dataref>;
using std::chrono::steady_clock;

constexpr std::size_t kMostValues = 100;
constexpr int kLongestArray = 64;
constexpr std::chrono::milliseconds kLongest(1'000);

// The dataref as the protocol can transfer it, if it can.
std::optional<velmar::Dataref> readableAs(const ListedDataref& dataref) {
    if (dataref.type.starts_with("byte") || dataref.elements > kLongestArray) {
        return std::nullopt;
    }
    const TypeAndSize type = parseType(dataref.type == "double" ? "float" : dataref.type);
    return velmar::Dataref{dataref.name, type.type, type.size};
}

Datarefs readableOf(const std::vector<ListedDataref>& listed) {
    Datarefs datarefs;
    for (const ListedDataref& each : listed) {
        if (datarefs.size() == kMostValues) {
            break;
        }
        if (auto readable = readableAs(each)) {
            datarefs.push_back(*std::move(readable));
        }
    }
    return datarefs;
}

Options briefOptions(const GlobalOptions& globals) {
    Options options = globals.ForClient();
    options.timeout = std::min(options.timeout, kLongest);
    options.cancelled = [end = steady_clock::now() + kLongest] {
        return isInterrupted() || steady_clock::now() >= end;
    };
    return options;
}

std::map<std::string, velmar::Value> read(const GlobalOptions& globals, const Datarefs& datarefs) {
    velmar::Client client(briefOptions(globals));
    const std::vector<std::size_t> unknown = registerKnown(client, datarefs);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < datarefs.size(); ++i) {
        if (std::find(unknown.begin(), unknown.end(), i) == unknown.end()) {
            names.push_back(datarefs[i].name);
        }
    }
    const std::vector<velmar::Value> values = client.read(names);
    std::map<std::string, velmar::Value> present;
    for (std::size_t i = 0; i < names.size(); ++i) {
        present.emplace(names[i], values[i]);
    }
    return present;
}

} // namespace

std::map<std::string, velmar::Value> presentValues(const GlobalOptions& globals,
                                                   const std::vector<ListedDataref>& datarefs) {
    try {
        const Datarefs readable = readableOf(datarefs);
        return readable.empty() ? std::map<std::string, velmar::Value>() : read(globals, readable);
    } catch (const std::exception&) {
        return {}; // no server, or a type or name that the protocol does not have
    }
}

} // namespace orvane::tool
