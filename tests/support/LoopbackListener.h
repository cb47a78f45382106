#pragma once

#include <cstdint>
#include <optional>

// A server's socket on 127.0.0.1, driven by a test. Set-up failures throw std::system_error.
class LoopbackListener final {
public:
    // Port 0: chosen by the system. Without a backlog, the socket is bound but does not listen.
    explicit LoopbackListener(std::uint16_t port = 0, std::optional<int> backlog = 4);
    ~LoopbackListener();
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    std::uint16_t Port() const;
    // Waits for a client, with a deadline. The socket is non-blocking and the caller's; -1 when
    // nobody connects.
    int Accept() const;

private:
    int socket;
};
