#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

enum class SocketCall { Socket, SetOption, Bind, Listen, Accept, Receive, Send, Close };

// Replaces the results of chosen socket calls of this process, which are then not made (except
// close), and counts all calls. One plan per call, in order, while the object lives; calls without
// a plan go to the system. One object at a time.
//
// Works by defining the calls in the program, before the C library's; link SocketFaults.cpp
// into the programs that need it.
class SocketFaults final {
public:
    SocketFaults();
    ~SocketFaults();
    SocketFaults(const SocketFaults&) = delete;
    SocketFaults& operator=(const SocketFaults&) = delete;

    void Fail(SocketCall call, int error) { plans[call].push_back({-1, error, {}, {}}); }
    void Return(SocketCall call, long result) { plans[call].push_back({result, 0, {}, {}}); }
    // The call is made.
    void Pass(SocketCall call) { plans[call].push_back({{}, 0, {}, {}}); }
    // The call is made after `event`, which simulates what may happen between two calls.
    void PassAfter(SocketCall call, std::function<void()> event) {
        plans[call].push_back({{}, 0, {}, std::move(event)});
    }
    // Sends only the first `bytes` bytes.
    void ShortenSend(std::size_t bytes) { plans[SocketCall::Send].push_back({{}, 0, bytes, {}}); }

    std::size_t Count(SocketCall call) const;
    // What the sends returned, in order.
    const std::vector<long>& SendResults() const { return sendResults; }

    struct Plan {
        std::optional<long> result;
        int error = 0;
        std::optional<std::size_t> sendLimit;
        std::function<void()> event;
    };
    // For the calls themselves.
    Plan Take(SocketCall call);
    void NoteSend(long result) { sendResults.push_back(result); }

private:
    std::map<SocketCall, std::deque<Plan>> plans;
    std::array<std::size_t, 8> counts{};
    std::vector<long> sendResults;
};
