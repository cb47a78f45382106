#pragma once

#include <map>

class IProtocol;

// Makes the protocol handlers of a new connection.
class IProtocolFactory {
public:
    virtual ~IProtocolFactory() = default;

    // One new instance of every protocol, by its identification. The caller deletes them.
    virtual std::map<unsigned int, IProtocol*> CreateProtocolInstances() = 0;
};
