#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace orvane::tool {

// What our code looks at in a request. Header fields that were not sent are empty.
struct HttpRequest {
    std::string method;
    std::string path;
    std::string id; // the parameter of this name
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

// Answers HTTP requests on threads of its own.
class HttpServer final {
public:
    static constexpr std::size_t kLargestBody = 128UL * 1024;
    // Answers without an end at a time.
    static constexpr std::size_t kMostStreams = 16;

    // Called on several threads. `check` sees a request without its body, and refuses it by an
    // answer.
    struct Handlers {
        std::function<std::optional<HttpAnswer>(const HttpRequest&)> check;
        std::function<HttpAnswer(const HttpRequest&)> answer;
    };

    // Listens; port 0 takes a free one. Failure: cannot listen there.
    HttpServer(const std::string& address, std::uint16_t port);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::uint16_t Port() const;
    // Begins to answer. Call it once.
    void Start(Handlers handlers);
    // Stops, and waits for its threads. Streams must have ended, or end by themselves. The
    // destructor does the same.
    void Stop();

private:
    struct Library;
    std::unique_ptr<Library> library;
};

} // namespace orvane::tool
