#include "orvane/velmar/Client.h"

#include "velmar/Session.h"

namespace orvane::velmar {

Client::Client(Options options) : session(std::make_unique<Session>(std::move(options))) {}

Client::~Client() = default;
Client::Client(Client&& other) noexcept = default;
Client& Client::operator=(Client&& other) noexcept = default;

void Client::setCallbacks(Callbacks callbacks) {
    session->connection().setCallbacks(std::move(callbacks));
}

void Client::registerDataref(const Dataref& dataref) {
    session->registerDatarefs({&dataref, 1});
}

void Client::registerDatarefs(std::span<const Dataref> datarefs) {
    session->registerDatarefs(datarefs);
}

void Client::registerCommand(const std::string& name) {
    session->registerCommands({&name, 1});
}

void Client::registerCommands(std::span<const std::string> names) {
    session->registerCommands(names);
}

void Client::unregisterDataref(std::string_view name) {
    session->unregisterDataref(name);
}

void Client::unregisterCommand(std::string_view name) {
    session->unregisterCommand(name);
}

Value Client::read(std::string_view name) {
    const std::string only(name);
    return session->read({&only, 1}).front();
}

std::vector<Value> Client::read(std::span<const std::string> names) {
    return session->read(names);
}

void Client::write(std::string_view name, const Value& value) {
    const std::pair<std::string, Value> only(name, value);
    session->write({&only, 1});
}

void Client::write(std::span<const std::pair<std::string, Value>> values) {
    session->write(values);
}

void Client::changes(std::span<const std::string> names, double rate, double deadband,
                     const std::function<bool(const Changes&)>& changed) {
    session->changes(names, rate, deadband, changed);
}

void Client::run(std::string_view name, Action action) {
    session->run(name, action);
}

std::vector<CommandReport> Client::poll() {
    return session->poll();
}

std::vector<CommandReport> Client::pollPresses() {
    return session->pollPresses();
}

void Client::reconnect() {
    session->connection().reconnect();
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

} // namespace orvane::velmar
