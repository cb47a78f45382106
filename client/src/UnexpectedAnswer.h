#pragma once

#include <stdexcept>
#include <string>

namespace orvane::detail {

// An answer that does not fit its request: usually the request arrived in pieces. Never leaves the
// library: the link repeats the request or throws a ProtocolError.
class UnexpectedAnswer final : public std::runtime_error {
public:
    UnexpectedAnswer(const std::string& expected, const std::string& got)
        : std::runtime_error("expected " + expected + ", got " + got) {}
};

} // namespace orvane::detail
