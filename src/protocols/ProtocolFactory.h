#pragma once

#include <map>

#include "network/IProtocolFactory.h"

class ICommandObserver;
class IDatarefProvider;
class ILoggingService;
class IUtilities;
class SimStateInformation;

// Makes one instance of each protocol that the plugin speaks, wired to the plugin's services.
// The services are borrowed and outlive every instance. No other code
// outside the protocols knows their classes: a new protocol is added here.
class ProtocolFactory final : public IProtocolFactory {
public:
    ProtocolFactory(SimStateInformation* simState, ICommandObserver* commandObserver,
                    ILoggingService* loggingService, IUtilities* utilities,
                    IDatarefProvider* datarefProvider);

    std::map<unsigned int, IProtocol*> CreateProtocolInstances() override;

private:
    SimStateInformation* simState;
    ICommandObserver* commandObserver;
    ILoggingService* loggingService;
    IUtilities* utilities;
    IDatarefProvider* datarefProvider;
};
