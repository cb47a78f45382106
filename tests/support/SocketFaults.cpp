#include "support/SocketFaults.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

SocketFaults* current = nullptr;

template <class Function>
Function* systemCall(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

template <class Make>
long planned(SocketCall call, Make make) {
    const SocketFaults::Plan plan = current != nullptr ? current->Take(call) : SocketFaults::Plan{};
    if (plan.event) {
        plan.event();
    }
    if (!plan.result) {
        return make(plan);
    }
    if (*plan.result == -1) {
        errno = plan.error;
    }
    return *plan.result;
}

} // namespace

SocketFaults::SocketFaults() {
    current = this;
}

SocketFaults::~SocketFaults() {
    current = nullptr;
}

std::size_t SocketFaults::Count(SocketCall call) const {
    return counts.at(static_cast<std::size_t>(call));
}

SocketFaults::Plan SocketFaults::Take(SocketCall call) {
    ++counts.at(static_cast<std::size_t>(call));
    const auto found = plans.find(call);
    if (found == plans.end() || found->second.empty()) {
        return {};
    }
    const Plan plan = found->second.front();
    found->second.pop_front();
    return plan;
}

extern "C" {

#pragma GCC visibility push(default)

int socket(int domain, int type, int protocol) noexcept {
    static auto* const real = systemCall<decltype(::socket)>("socket");
    return static_cast<int>(planned(
        SocketCall::Socket, [&](const auto&) -> long { return real(domain, type, protocol); }));
}

int setsockopt(int file, int level, int option, const void* value, socklen_t length) noexcept {
    static auto* const real = systemCall<decltype(::setsockopt)>("setsockopt");
    return static_cast<int>(planned(SocketCall::SetOption, [&](const auto&) -> long {
        return real(file, level, option, value, length);
    }));
}

int bind(int file, const sockaddr* address, socklen_t length) noexcept {
    static auto* const real = systemCall<decltype(::bind)>("bind");
    return static_cast<int>(planned(
        SocketCall::Bind, [&](const auto&) -> long { return real(file, address, length); }));
}

int listen(int file, int backlog) noexcept {
    static auto* const real = systemCall<decltype(::listen)>("listen");
    return static_cast<int>(
        planned(SocketCall::Listen, [&](const auto&) -> long { return real(file, backlog); }));
}

int accept(int file, sockaddr* address, socklen_t* length) {
    static auto* const real = systemCall<decltype(::accept)>("accept");
    return static_cast<int>(planned(
        SocketCall::Accept, [&](const auto&) -> long { return real(file, address, length); }));
}

ssize_t recv(int file, void* buffer, size_t size, int flags) {
    static auto* const real = systemCall<decltype(::recv)>("recv");
    return planned(SocketCall::Receive,
                   [&](const auto&) -> long { return real(file, buffer, size, flags); });
}

ssize_t send(int file, const void* buffer, size_t size, int flags) {
    static auto* const real = systemCall<decltype(::send)>("send");
    const ssize_t result = planned(SocketCall::Send, [&](const SocketFaults::Plan& plan) -> long {
        return real(file, buffer, std::min(size, plan.sendLimit.value_or(size)), flags);
    });
    if (current != nullptr) {
        current->NoteSend(result);
    }
    return result;
}

// On Linux, a close that fails still closes the socket.
int close(int file) {
    static auto* const real = systemCall<decltype(::close)>("close");
    const int result = real(file);
    return static_cast<int>(
        planned(SocketCall::Close, [&](const auto&) -> long { return result; }));
}

#pragma GCC visibility pop

} // extern "C"
