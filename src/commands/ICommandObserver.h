#pragma once

#include <string>

class IProtocol;

// Lets protocol instances listen to simulator commands by name.
class ICommandObserver {
public:
    virtual ~ICommandObserver() = default;

    // From now on `protocol->HandleCommand(id, phase)` is called on every phase of the command,
    // which is created if the simulator does not know it. A protocol has one id per command: a
    // second registration changes nothing. `protocol` unregisters before it is deleted.
    virtual void RegisterProtocolForCommandCallback(IProtocol* protocol, unsigned int id,
                                                    std::string name) = 0;
    virtual void UnregisterProtocolForCommandCallback(IProtocol* protocol, std::string name) = 0;
    virtual void UnregisterAllForProtocol(IProtocol* protocol) = 0;

    // Called by the simulator. Returns 1 to let the command go on, 0 to swallow it.
    virtual int HandleCommand(void* command, int phase, void* refcon) = 0;
};
