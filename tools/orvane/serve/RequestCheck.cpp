#include "tools/orvane/serve/RequestCheck.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <random>

#include <fmt/core.h>

namespace orvane::tool {

namespace {

constexpr std::string_view kHex = "0123456789abcdef";
constexpr int kForbidden = 403;
constexpr int kNotAllowed = 405;
constexpr int kUnsupportedType = 415;

bool isAddress(std::string_view text) {
    std::array<unsigned char, sizeof(in6_addr)> address{};
    const bool isBracketed = text.starts_with('[') && text.ends_with(']');
    const std::string bare(isBracketed ? text.substr(1, text.size() - 2) : text);
    return ::inet_pton(isBracketed ? AF_INET6 : AF_INET, bare.c_str(), address.data()) == 1;
}

bool isLetterOrDigit(char each) {
    return (each >= '0' && each <= '9') || (each >= 'a' && each <= 'z') ||
           (each >= 'A' && each <= 'Z');
}

// A browser says where the page is from that asks, even if it sends no Origin. Only the address
// itself may be typed, or be a link.
bool isOurFetch(const HttpRequest& request) {
    const std::string& site = request.fetchSite;
    return site.empty() || site == "same-origin" || site == "none" || request.path == "/";
}

// Our own page: "http://" and the Host of the same request.
bool isOurOrigin(std::string_view origin, std::string_view host) {
    constexpr std::string_view kScheme = "http://";
    return origin.starts_with(kScheme) && origin.substr(kScheme.size()) == host;
}

} // namespace

std::optional<std::string> hostOf(const std::string& address) {
    const bool isIpv6 = address.find(':') != std::string::npos;
    const std::string host = isIpv6 ? fmt::format("[{}]", address) : address;
    return isAddress(host) ? std::optional(host) : std::nullopt;
}

bool isOurHost(std::string_view host, const Site& site) {
    const std::string port = fmt::format(":{}", site.port);
    if (!host.ends_with(port)) {
        return false;
    }
    host.remove_suffix(port.size());
    if (host == "127.0.0.1" || host == "localhost" || host == "[::1]") {
        return true;
    }
    return site.address != "127.0.0.1" && isAddress(host);
}

bool isToken(std::string_view given, std::string_view token) {
    unsigned difference = given.size() == token.size() && !token.empty() ? 0 : 1;
    for (std::size_t i = 0; i < std::min(given.size(), token.size()); ++i) {
        difference |= static_cast<unsigned>(given[i] ^ token[i]);
    }
    return difference == 0;
}

bool isPageId(std::string_view id) {
    return id.size() >= 16 && id.size() <= 64 && std::all_of(id.begin(), id.end(), isLetterOrDigit);
}

std::optional<HttpAnswer> refusalOf(const HttpRequest& request, const Site& site) {
    if (!isOurHost(request.host, site)) {
        return textAnswer(kForbidden, "wrong host: use the address that orvane serve has printed");
    }
    if ((!request.origin.empty() && !isOurOrigin(request.origin, request.host)) ||
        !isOurFetch(request)) {
        return textAnswer(kForbidden, "another website asked for this");
    }
    if (request.method == "GET" || request.method == "HEAD") {
        return std::nullopt;
    }
    if (request.method != "POST") {
        return textAnswer(kNotAllowed, "only GET and POST");
    }
    if (request.contentType != "application/json" || !request.contentEncoding.empty()) {
        return textAnswer(kUnsupportedType, "the body must be plain application/json");
    }
    if (request.path != "/watch" && !isToken(request.token, site.token)) {
        return textAnswer(kForbidden,
                          "the token is wrong: use the address that orvane serve has "
                          "printed");
    }
    return std::nullopt;
}

std::string randomToken() {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> digit(0, kHex.size() - 1);
    std::string token(32, '0');
    std::generate(token.begin(), token.end(), [&] { return kHex[digit(source)]; });
    return token;
}

} // namespace orvane::tool
