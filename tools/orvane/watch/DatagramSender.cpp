#include "tools/orvane/watch/DatagramSender.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/cli/Failure.h"

namespace orvane::tool {

namespace {

struct HostAndPort {
    std::string host;
    std::string port;
};

bool isPort(const std::string& text) {
    return headless::parsedNumber<std::uint16_t>(text).value_or(0) > 0;
}

HostAndPort parse(const std::string& place) {
    const std::size_t colon = place.rfind(':');
    HostAndPort result;
    if (colon != std::string::npos) {
        result = {place.substr(0, colon), place.substr(colon + 1)};
    }
    std::string& host = result.host;
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    } else if (host.find(':') != std::string::npos) {
        host.clear();
    }
    if (host.empty() || !isPort(result.port)) {
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("--udp: \"{}\" is not of the form HOST:PORT", place));
    }
    return result;
}

} // namespace

DatagramSender::DatagramSender(const std::string& place)
    : place(place),
      addresses(resolve(place)),
      socket(::socket(addresses->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    if (socket == -1) {
        throw Failure(ExitCode::CannotConnect, fmt::format("{}: {}", place, std::strerror(errno)));
    }
}

DatagramSender::~DatagramSender() {
    ::close(socket);
}

DatagramSender::Addresses DatagramSender::resolve(const std::string& place) {
    const HostAndPort parsed = parse(place);
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    int result = 0;
    // A datagram that nobody receives is lost without a word, and programs that plot usually listen
    // on IPv4. So a host with addresses of both kinds, as localhost often is, gets it there.
    for (const int family : {AF_INET, AF_UNSPEC}) {
        hints.ai_family = family;
        result = ::getaddrinfo(parsed.host.c_str(), parsed.port.c_str(), &hints, &found);
        if (result == 0) {
            break;
        }
    }
    if (result != 0) {
        throw Failure(ExitCode::CannotConnect,
                      fmt::format("{}: {}", place, ::gai_strerror(result)));
    }
    return {found, &::freeaddrinfo};
}

std::string DatagramSender::Send(std::string_view text) const {
    const ssize_t sent =
        ::sendto(socket, text.data(), text.size(), 0, addresses->ai_addr, addresses->ai_addrlen);
    if (sent >= 0 || errno == EINTR) {
        return "";
    }
    if (errno == EMSGSIZE) {
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("a reading of {} bytes does not fit into a datagram, which holds "
                                  "{}: watch less at a time",
                                  text.size(), kLargest));
    }
    return fmt::format("{}: {}", place, std::strerror(errno));
}

} // namespace orvane::tool
