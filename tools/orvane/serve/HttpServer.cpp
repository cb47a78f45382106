#include "tools/orvane/serve/HttpServer.h"

#include <httplib.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"

namespace orvane::tool {

namespace {

// A request that does not arrive, or an answer that is not read, in this time costs its browser the
// connection.
constexpr std::chrono::seconds kPatience(2);
constexpr std::size_t kThreads = HttpServer::kMostStreams + 32;
constexpr const char* kEverything = "/.*";

// Nothing comes from elsewhere, and no other page may show or read this one.
const httplib::Headers kHeaders{
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data: blob:; "
     "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"}};

HttpRequest requestOf(const httplib::Request& request) {
    return {request.method,
            request.path,
            request.get_param_value("id"),
            request.get_param_value("match"),
            request.get_header_value("Host"),
            request.get_header_value("Origin"),
            request.get_header_value("Sec-Fetch-Site"),
            request.get_header_value("Content-Type"),
            request.get_header_value("Content-Encoding"),
            request.get_header_value("X-Orvane-Token"),
            {}};
}

void send(HttpAnswer answer, httplib::Response& response) {
    response.status = answer.status;
    if (!answer.more) {
        response.set_content(answer.body, answer.type.c_str());
        return;
    }
    const auto write = [more = std::move(answer.more)](std::size_t, httplib::DataSink& sink) {
        const std::optional<std::string> text = more();
        if (!text) {
            sink.done();
            return true;
        }
        return sink.write(text->data(), text->size());
    };
    response.set_chunked_content_provider(answer.type, write);
}

} // namespace

struct HttpServer::Library {
    httplib::Server server;
    Handlers handlers;
    std::uint16_t port = 0;
    std::thread thread;

    void Answer(const HttpRequest& request, httplib::Response& response) const {
        std::optional<HttpAnswer> refusal = handlers.check(request);
        send(refusal ? std::move(*refusal) : handlers.answer(request), response);
    }

    // The body is read only if the rest of the request is right.
    void AnswerPost(HttpRequest request, httplib::Response& response,
                    const httplib::ContentReader& read) const {
        if (std::optional<HttpAnswer> refusal = handlers.check(request)) {
            send(std::move(*refusal), response);
            return;
        }
        const auto append = [&](const char* bytes, std::size_t count) {
            const bool fits = request.body.size() + count <= kLargestBody;
            request.body.append(bytes, fits ? count : 0);
            return fits;
        };
        if (read(append)) {
            send(handlers.answer(request), response);
        } else {
            response.status = response.status == 413 ? 413 : 400;
        }
    }
};

HttpServer::HttpServer(const std::string& address, std::uint16_t port)
    : library(std::make_unique<Library>()) {
    httplib::Server& server = library->server;
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server.set_tcp_nodelay(true);
    // The library would let another program listen at the same port.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    server.set_keep_alive_max_count(1); // an idle connection would keep a thread
    server.set_read_timeout(kPatience);
    server.set_write_timeout(kPatience);
    server.set_payload_max_length(kLargestBody);
    server.set_default_headers(kHeaders);
    const bool isAnyPort = port == 0;
    const int chosen = isAnyPort ? server.bind_to_any_port(address) : int{port};
    errno = 0;
    if (chosen <= 0 || (!isAnyPort && !server.bind_to_port(address, port))) {
        throw Failure(
            ExitCode::CannotConnect,
            fmt::format("cannot listen on {}:{}: {}", address, port,
                        errno == EADDRINUSE || errno == EACCES ? std::strerror(errno)
                                                               : "not an address of this machine"));
    }
    library->port = static_cast<std::uint16_t>(chosen);
}

HttpServer::~HttpServer() {
    Stop();
}

void HttpServer::Stop() {
    if (library->thread.joinable()) {
        library->server.stop();
        library->thread.join();
    }
}

std::uint16_t HttpServer::Port() const {
    return library->port;
}

void HttpServer::Start(Handlers handlers) {
    Library& all = *library;
    all.handlers = std::move(handlers);
    all.server.Get(kEverything,
                   [&all](const httplib::Request& request, httplib::Response& response) {
                       all.Answer(requestOf(request), response);
                   });
    all.server.Post(kEverything,
                    [&all](const httplib::Request& request, httplib::Response& response,
                           const httplib::ContentReader& read) {
                        all.AnswerPost(requestOf(request), response, read);
                    });
    // What the library refuses has no text.
    all.server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            response.set_content("refused\n", "text/plain");
        }
    });
    all.thread = std::thread([&all] { all.server.listen_after_bind(); });
    // Until then it could not be stopped.
    while (!all.server.is_running()) {
        std::this_thread::yield();
    }
}

} // namespace orvane::tool
