#include "common/LoggingService.h"

#include <cstdlib>
#include <ctime>

#include "XPLMUtilities.h"

namespace {

// std::to_string, unlike a stream, ignores a global locale that another plugin may have set.
std::string localDateAndTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return std::to_string(local.tm_year + 1900) + "-" + std::to_string(local.tm_mon + 1) + "-" +
           std::to_string(local.tm_mday) + " " + std::to_string(local.tm_hour) + ":" +
           std::to_string(local.tm_min) + ":" + std::to_string(local.tm_sec);
}

} // namespace

void LoggingService::SetLogLevel(LogLevel level) {
    logLevel = level;
}

void LoggingService::Log(LogLevel level, std::string message) {
    if (!IsEnabled(level)) {
        return;
    }
    const std::string line = "XPlaneOrvane " + localDateAndTime() + " " + message + "\n";
    writeToXPlaneLog(line.c_str());
    if (level == LogLevelError) {
        std::abort();
    }
}

bool LoggingService::IsEnabled(LogLevel level) const {
    return level <= logLevel || level == LogLevelError;
}

void LoggingService::writeToXPlaneLog(const char* text) {
    XPLMDebugString(text);
}
