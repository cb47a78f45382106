#pragma once

#include <string>

#include "XPLMUtilities.h"

class ILoggingService;
class IRingBuffer;

// A client's number for a simulator command. FindReference must have
// succeeded before the command is run.
class XPlaneCommand final {
public:
    XPlaneCommand(unsigned int identifier, std::string name);
    XPlaneCommand(const XPlaneCommand&) = delete;
    XPlaneCommand& operator=(const XPlaneCommand&) = delete;

    // Reads a descriptor; never null, and the caller owns it. With fewer than 13 bytes in the
    // buffer, or a name that has not arrived whole, the process ends.
    static XPlaneCommand* FromStream(IRingBuffer* in, ILoggingService* log);

    // Resolves the name; false when the simulator does not know it.
    bool FindReference();

    void Once();
    void Begin();
    void End();

    unsigned int GetId() const;
    std::string GetName() const;

private:
    unsigned int identifier;
    std::string name;
    XPLMCommandRef command = nullptr;
};
