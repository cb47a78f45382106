#include "orvane/tarnel/Client.h"

#include <utility>

#include "tarnel/Session.h"

namespace orvane::tarnel {

Client::Client(Options options) : session(std::make_unique<Session>(std::move(options))) {}

Client::~Client() = default;
Client::Client(Client&& other) noexcept = default;
Client& Client::operator=(Client&& other) noexcept = default;

void Client::setCallbacks(Callbacks callbacks) {
    session->connection().setCallbacks(std::move(callbacks));
}

void Client::onAircraftChanged(std::function<void(std::uint32_t)> callback) {
    session->onAircraftChanged(std::move(callback));
}

Version Client::version() {
    return session->version();
}

Answer Client::define(Definitions definitions) {
    return session->define(std::move(definitions));
}

Answer Client::exchange(std::span<const Item> items) {
    return session->exchange(items);
}

Answer Client::exchange(std::initializer_list<Item> items) {
    return session->exchange(std::span(items.begin(), items.size()));
}

void Client::reconnect() {
    session->reconnect();
}

void Client::close() noexcept {
    session->connection().close();
}

bool Client::isConnected() const noexcept {
    return session->connection().isConnected();
}

const std::string& Client::host() const noexcept {
    return session->connection().host();
}

} // namespace orvane::tarnel
