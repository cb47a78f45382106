#pragma once

#include <string>

#include "common/LogLevel.h"

// Leveled logging into the simulator's log.
//
// Callers build the whole message: a level word, "@", the class name, "::", the operation name,
// " : " and the detail. A message at LogLevelError does not return from the real service: it ends
// the process, so callers use it for broken invariants only.
class ILoggingService {
public:
    virtual ~ILoggingService() = default;

    // Messages above `level` are dropped, except that LogLevelError is always written.
    virtual void SetLogLevel(LogLevel level) = 0;
    virtual void Log(LogLevel level, std::string message) = 0;

    // Whether Log would write a message of this level. Callers that build messages often ask first.
    virtual bool IsEnabled(LogLevel /*level*/) const { return true; }
};
