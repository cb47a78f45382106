#pragma once

#include <string>

#include "common/ILoggingService.h"

// Writes each message as one line of the simulator's log: the plugin's name, the local date and
// time, the message, a newline. Numbers are plain decimal without leading zeros.
//
// Main thread only. After a message at LogLevelError has been written, the process is aborted.
class LoggingService final : public ILoggingService {
public:
    LoggingService() = default;
    LoggingService(const LoggingService&) = delete;
    LoggingService& operator=(const LoggingService&) = delete;

    void SetLogLevel(LogLevel level) override;
    void Log(LogLevel level, std::string message) override;
    bool IsEnabled(LogLevel level) const override;

    // Passes `text` to the simulator unchanged.
    void writeToXPlaneLog(const char* text);

private:
    int logLevel = LogLevelWarning;
};
