#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/ILoggingService.h"

// Thrown instead of ending the process, as the real service does at LogLevelError.
class FatalReport final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Keeps every message, whatever the threshold. After a message at LogLevelError it throws
// FatalReport, so that no code runs that would not run in the real process.
class RecordingLogger final : public ILoggingService {
public:
    ~RecordingLogger() override {
        if (onDelete) {
            onDelete();
        }
    }

    void SetLogLevel(LogLevel newLevel) override { level = newLevel; }

    void Log(LogLevel messageLevel, std::string message) override {
        messages.emplace_back(messageLevel, message);
        if (onLog) {
            onLog();
        }
        if (messageLevel == LogLevelError && throwsOnError) {
            throw FatalReport(message);
        }
    }

    // The messages of one level, in order.
    std::vector<std::string> At(LogLevel wanted) const {
        std::vector<std::string> found;
        for (const auto& [messageLevel, message] : messages) {
            if (messageLevel == wanted) {
                found.push_back(message);
            }
        }
        return found;
    }

    LogLevel level = LogLevelWarning;
    std::function<void()> onLog;
    std::function<void()> onDelete;
    bool throwsOnError = true;
    std::vector<std::pair<LogLevel, std::string>> messages;
};
