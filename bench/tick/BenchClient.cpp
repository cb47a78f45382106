#include "bench/tick/BenchClient.h"

#include <sys/socket.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/Deadline.h"

int BenchClient::AwaitAcceptance(const std::function<void()>& runFrame) const {
    int accepted = -1;
    const auto isAccepted = [&] {
        accepted = acceptedSocket();
        return accepted != -1;
    };
    if (!driveUntil(runFrame, isAccepted)) {
        throw std::runtime_error("the plugin accepts no client");
    }
    return accepted;
}

int BenchClient::acceptedSocket() const {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        if (portOf(descriptor, ::getpeername) == Port()) {
            return descriptor;
        }
    }
    return -1;
}

void BenchClient::TakeAnswer(Bytes& answer) {
    if (AwaitInto(answer.data(), answer.size()) < answer.size()) {
        throw std::runtime_error("no answer");
    }
}
