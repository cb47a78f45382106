#pragma once

#include <atomic>
#include <chrono>
#include <random>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "support/TcpPeer.h"

// Threads that connect, send a request, close their direction and reset, for a number of
// connections. After such a reset the plugin's send raises a signal instead of an error.
class ResettingClients final {
public:
    ResettingClients(Bytes request, int connections)
        : request(std::move(request)), connectionsLeft(connections) {
        for (unsigned int seed = 0; seed < kThreads; ++seed) {
            threads.emplace_back([this, seed] {
                run(seed);
                --threadsRunning;
            });
        }
    }
    ~ResettingClients() {
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    ResettingClients(const ResettingClients&) = delete;
    ResettingClients& operator=(const ResettingClients&) = delete;

    bool AreDone() const { return threadsRunning == 0; }

private:
    static constexpr unsigned int kThreads = 3;

    void run(unsigned int seed) {
        std::mt19937 random(seed);
        try {
            while (connectionsLeft > 0) {
                const TcpPeer::WithoutWaiting eagerly;
                TcpPeer client(kPluginPort, eagerly);
                if (!client.IsConnected()) {
                    // The queue of the listening socket is full, and the kernel would only try
                    // again after a second.
                    std::this_thread::yield();
                    continue;
                }
                --connectionsLeft;
                client.Send(request);
                client.HalfClose();
                // At any point of the frames that the plugin needs to answer.
                std::this_thread::sleep_for(std::chrono::microseconds(random() % 800));
                client.CloseWithReset();
            }
        } catch (const std::system_error&) {
            // The simulator is gone; the test sees that itself.
            connectionsLeft = 0;
        }
    }

    const Bytes request;
    std::atomic<int> connectionsLeft;
    std::atomic<unsigned int> threadsRunning = kThreads;
    std::vector<std::thread> threads;
};
