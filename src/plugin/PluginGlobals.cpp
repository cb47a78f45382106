#include "plugin/PluginGlobals.h"

XPlanePlugin* globalPlugin = nullptr;
SimStateInformation* simStateInformation = nullptr;
ILoggingService* loggingService = nullptr;
IUtilities* utils = nullptr;
ICommandObserver* commandObserver = nullptr;
IDatarefProvider* datarefProvider = nullptr;
IProtocolFactory* protocolFactory = nullptr;
NetworkResources* networkResources = nullptr;
TcpServer* tcpServer = nullptr;
