#pragma once

class ICommandObserver;
class IDatarefProvider;
class ILoggingService;
class IProtocolFactory;
class IUtilities;
class NetworkResources;
class SimStateInformation;
class TcpServer;
class XPlanePlugin;

// The long-lived objects, owned from XPluginStart to XPluginStop and null outside of it.
//
// Only the plain functions that the simulator calls may read these: everything else is handed its
// collaborators through its constructor.
extern XPlanePlugin* globalPlugin;
extern SimStateInformation* simStateInformation;
extern ILoggingService* loggingService;
extern IUtilities* utils;
extern ICommandObserver* commandObserver;
extern IDatarefProvider* datarefProvider;
extern IProtocolFactory* protocolFactory;
extern NetworkResources* networkResources;
extern TcpServer* tcpServer;
