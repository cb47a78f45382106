#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orvane::tool {

// What our code looks at in a request. Header fields that were not sent are empty.
struct HttpRequest {
    std::string method;
    std::string path;
    std::string id; // the parameters of these names
    std::string match;
    std::string host;
    std::string origin;
    std::string fetchSite; // Sec-Fetch-Site
    std::string contentType;
    std::string contentEncoding;
    std::string token; // X-Orvane-Token
    std::string body;
};

struct HttpAnswer {
    int status = 200;
    std::string type = "text/plain; charset=utf-8";
    std::string body;
    // If there is one, the answer has no end: it is called for more text until it returns nothing.
    // It may wait, and is destroyed when the browser has gone.
    std::function<std::optional<std::string>()> more;
};

// A line of text, mostly why a request is refused.
HttpAnswer textAnswer(int status, const std::string& line);
HttpAnswer jsonAnswer(std::string text);

} // namespace orvane::tool
