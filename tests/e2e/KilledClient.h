#pragma once

#include <sys/mman.h>

#include <atomic>
#include <csignal>
#include <system_error>

#include "support/ChildProcess.h"
#include "support/TcpPeer.h"

// A process that exchanges with the plugin as fast as it can until it is killed.
class KilledClient final {
public:
    explicit KilledClient(const Bytes& request)
        : exchanges(new (::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)),
          process([&] { exchangeForever(request); }) {}
    ~KilledClient() { ::munmap(exchanges, sizeof(*exchanges)); }
    KilledClient(const KilledClient&) = delete;
    KilledClient& operator=(const KilledClient&) = delete;

    // How many exchanges it had completed.
    int Kill() {
        process.Signal(SIGKILL);
        process.WaitForEnd();
        return *exchanges;
    }

private:
    void exchangeForever(const Bytes& request) {
        try {
            TcpPeer client(kPluginPort);
            while (!client.HasEnded()) {
                client.Send(request);
                client.Await(1);
                client.Receive();
                ++*exchanges;
            }
        } catch (const std::system_error&) {
            // The simulator is gone; the test sees that itself.
        }
    }

    std::atomic<int>* exchanges;
    ChildProcess process;
};
