#pragma once

class ILoggingService;
class IUtilities;

// The place for a platform's one-time network start-up and shut-down. Linux needs none.
class NetworkResources final {
public:
    NetworkResources(IUtilities* utilities, ILoggingService* loggingService);

    // Always true.
    bool Init();
    void Cleanup();
};
