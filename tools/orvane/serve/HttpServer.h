#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tools/orvane/serve/HttpMessages.h"

namespace orvane::tool {

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
