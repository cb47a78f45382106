#pragma once

#include <cstdint>
#include <string>

#include "orvane/Options.h"

namespace CLI {
class App;
}

namespace orvane::tool {

enum class Format { Text, Json, Csv };

// The heading of these options in the help.
inline constexpr const char* kGlobalGroup = "Options of every command";

// The options that every subcommand understands, before or after its name.
struct GlobalOptions {
    std::string host = "127.0.0.1";
    std::uint16_t port = 48000;
    double timeoutSeconds = 2.0;
    // Whether host and port were given.
    bool hasHost = false;
    bool hasPort = false;
    bool json = false;
    bool csv = false;

    Format OutputFormat() const;
    // Options of a client whose calls an interrupt ends with a CancelledError.
    Options ForClient(OnLoss onLoss = OnLoss::Throw) const;
};

void declareGlobalOptions(CLI::App& app, GlobalOptions& globals);

} // namespace orvane::tool
