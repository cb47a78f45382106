#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/ILoggingService.h"

// Thrown where the real process would end with a line that is documented for the input. Not
// a std::exception, since a connection catches those of its protocol.
struct DocumentedEnd {};

// A logger for fuzz targets. A message at LogLevelError that is documented for the kind of input
// becomes a DocumentedEnd; any other aborts the target and so is a finding.
class EndingLogger final : public ILoggingService {
public:
    // `prefixes`: documented lines without the detail at their end.
    explicit EndingLogger(std::vector<std::string_view> prefixes)
        : documented(std::move(prefixes)) {}

    // From now on, this input may also end with this line.
    void Allow(std::string_view prefix) { documented.push_back(prefix); }

    void SetLogLevel(LogLevel level) override { threshold = level; }
    void Log(LogLevel level, std::string message) override;
    bool IsEnabled(LogLevel level) const override { return level <= threshold; }

    // The verbose log for one in eight sizes of input, so that a finding can be repeated: users
    // seldom turn it on, and building its lines takes much of an input's time.
    void SetLogLevelFor(std::size_t inputSize) {
        SetLogLevel(inputSize % 8 == 0 ? LogLevelVerbose : LogLevelWarning);
    }

private:
    std::vector<std::string_view> documented;
    LogLevel threshold = LogLevelVerbose;
};

// The lines with which a message may end the process: each protocol's own, and those of both.
std::vector<std::string_view> endsOfTarnel();
std::vector<std::string_view> endsOfVelmar();
std::vector<std::string_view> endsOfAnyProtocol();
