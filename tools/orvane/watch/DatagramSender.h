#pragma once

#include <netdb.h>

#include <memory>
#include <string>
#include <string_view>

namespace orvane::tool {

// Sends texts over UDP to a program that may or may not listen.
class DatagramSender final {
public:
    // The largest text that an IPv4 datagram holds.
    static constexpr std::size_t kLargest = 65'507;

    // HOST:PORT, with an IPv6 address in brackets. Failure: not of this form, or no such host.
    explicit DatagramSender(const std::string& place);
    ~DatagramSender();
    DatagramSender(const DatagramSender&) = delete;
    DatagramSender& operator=(const DatagramSender&) = delete;

    // Returns why the system refused it, or nothing. Failure: too large for a datagram.
    std::string Send(std::string_view text) const;

private:
    using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;
    static Addresses resolve(const std::string& place);

    const std::string place;
    const Addresses addresses;
    int socket = -1;
};

} // namespace orvane::tool
