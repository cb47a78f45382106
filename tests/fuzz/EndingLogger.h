#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/ILoggingService.h"

// Thrown where the real process would end with a line that is documented for the input. No
// std::exception, since a connection catches those of its protocol.
struct DocumentedEnd {};

// A logger for fuzz targets. A message at LogLevelError that is documented for the kind of input
// becomes a DocumentedEnd; any other aborts the target and so is a finding.
class EndingLogger final : public ILoggingService {
public:
    // Of a documented line that ends in a detail, `prefixes` holds what comes before.
    explicit EndingLogger(std::vector<std::string_view> prefixes)
        : documented(std::move(prefixes)) {}

    // Another line that this input may end with from now on.
    void Allow(std::string_view prefix) { documented.push_back(prefix); }

    void SetLogLevel(LogLevel /*level*/) override {}
    void Log(LogLevel level, std::string message) override;

private:
    std::vector<std::string_view> documented;
};

// What a message may end the process with: each protocol's own lines, and those of both.
std::vector<std::string_view> endsOfTarnel();
std::vector<std::string_view> endsOfVelmar();
std::vector<std::string_view> endsOfAnyProtocol();
