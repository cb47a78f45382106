#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/orvane/serve/HttpMessages.h"

namespace orvane::tool {

// Where a server listens, and what allows a page to write.
struct Site {
    std::string address = "127.0.0.1";
    std::uint16_t port = 0;
    std::string token;
};

// An IP address as in a URL, where IPv6 ones are in brackets; empty if it is not one.
std::optional<std::string> hostOf(const std::string& address);

// Whether a browser that was told to go to this Host meant us: an address of this machine, or, if
// the server listens on others as well, an address and not a name. A website that makes its name
// stand for 127.0.0.1 is thereby refused.
bool isOurHost(std::string_view host, const Site& site);

// Whether this is the token, in a time that does not depend on how much of it is right.
bool isToken(std::string_view given, std::string_view token);

// The name that a page gives itself: 16 to 64 letters and digits.
bool isPageId(std::string_view id);

// The refusal of a request that is not from our page, or that writes without the token; looks at
// all but the body. Empty if it may go on.
std::optional<HttpAnswer> refusalOf(const HttpRequest& request, const Site& site);

// 32 random letters and digits.
std::string randomToken();

} // namespace orvane::tool
