#pragma once

#include <cstdint>
#include <string>

// Small services that the network and protocol code share.
class IUtilities {
public:
    virtual ~IUtilities() = default;

    // Text for a socket error code, for log messages. Never fails.
    virtual std::string GetSocketErrorMsg(int code) = 0;

    // Wall-clock milliseconds since the Unix epoch; jumps when the system time is changed.
    virtual std::int64_t GetTimeStampMs() = 0;
};
