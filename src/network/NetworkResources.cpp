#include "network/NetworkResources.h"

NetworkResources::NetworkResources(IUtilities* /*utilities*/, ILoggingService* /*loggingService*/) {
}

bool NetworkResources::Init() {
    return true;
}

void NetworkResources::Cleanup() {}
