#include "protocols/ProtocolFactory.h"

#include <memory>

#include "protocols/tarnel/TarnelProtocol.h"
#include "protocols/velmar/VelmarProtocol.h"

namespace {

void insert(std::map<unsigned int, IProtocol*>& instances, std::unique_ptr<IProtocol> instance) {
    const unsigned int identification = instance->GetProtocolIdentification();
    if (instances.emplace(identification, instance.get()).second) {
        instance.release(); // NOLINT(bugprone-unused-return-value): the map has it now.
    }
}

} // namespace

ProtocolFactory::ProtocolFactory(SimStateInformation* simState, ICommandObserver* commandObserver,
                                 ILoggingService* loggingService, IUtilities* utilities,
                                 IDatarefProvider* datarefProvider)
    : simState(simState),
      commandObserver(commandObserver),
      loggingService(loggingService),
      utilities(utilities),
      datarefProvider(datarefProvider) {}

std::map<unsigned int, IProtocol*> ProtocolFactory::CreateProtocolInstances() {
    std::map<unsigned int, IProtocol*> instances;
    insert(instances, std::make_unique<TarnelProtocol>(simState, loggingService, utilities,
                                                       datarefProvider, commandObserver));
    insert(instances, std::make_unique<VelmarProtocol>(simState, commandObserver, loggingService,
                                                       utilities, datarefProvider));
    return instances;
}
