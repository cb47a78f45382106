#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HeldCommands.h"
#include "ISession.h"
#include "Link.h"
#include "orvane/velmar/Client.h"
#include "velmar/Registering.h"
#include "velmar/Wire.h"

namespace orvane::velmar {

// What a Client knows: what is registered, its numbers on the current connection, and what is held.
//
// During a connection a number belongs to one name; the next connection starts at 1 again. Every
// attempt therefore writes its request anew.
class __attribute__((visibility("hidden"))) Client::Session final : public detail::ISession {
public:
    explicit Session(Options options);
    ~Session() override;

    detail::Link& connection() { return link; }

    void registerDatarefs(std::span<const Dataref> wanted);
    void registerCommands(std::span<const std::string> wanted);
    void unregisterDataref(std::string_view name);
    void unregisterCommand(std::string_view name);
    std::vector<Value> read(std::span<const std::string> names);
    void write(std::span<const std::pair<std::string, Value>> values);
    void changes(std::span<const std::string> names, double rate, double deadband,
                 const std::function<bool(const Changes&)>& changed);
    void run(std::string_view name, Action action);
    std::vector<CommandReport> poll();
    std::vector<CommandReport> pollPresses();

    // Gives all names new numbers.
    void declare(detail::Connection& on) override;
    std::vector<std::string> held() const override { return begun.names(); }
    void release(detail::Connection& on, const std::string& doing) override;
    void releaseByName(detail::Connection& on, const std::string& doing) override;

private:
    struct DatarefEntry {
        Dataref dataref;
        wire::Number number = 0;
    };
    using Names = std::vector<std::string>;
    using Datarefs = std::map<std::string, DatarefEntry, std::less<>>;
    using Commands = std::map<std::string, wire::Number, std::less<>>;

    // T is Dataref, or std::string for a command.
    template <typename T>
    void declareAll(detail::Connection& on, std::span<const T> wanted, Names& refused);
    template <typename T>
    void registerAll(std::span<const T> wanted);
    template <typename T>
    std::vector<Numbered<T>> withNumbers(std::span<const T> batch);
    // By reference: a new connection changes the number between attempts.
    template <typename WriteRequest, typename ReadReply>
    void unregister(std::string_view name, const wire::Number& number, WriteRequest writeRequest,
                    ReadReply readReply);
    void note(const Dataref& dataref, wire::Number number);
    void note(const std::string& command, wire::Number number);
    void readBatch(std::span<const DatarefEntry* const> batch, std::vector<Value>& values);
    void writeBatch(std::span<const std::pair<std::string, Value>> batch);
    // Reports the commands of a batch and resets their states.
    void pollBatch(std::span<const std::string> batch, std::vector<CommandReport>& reports);
    std::vector<CommandReport> toReports(const std::vector<wire::PollEntry>& entries) const;

    // std::out_of_range if it is not registered.
    const DatarefEntry& find(std::string_view name) const;
    const Commands::value_type& findCommand(std::string_view name) const;
    // The number that a name has on this connection, or a new one.
    wire::Number numberFor(const Dataref& dataref);
    wire::Number numberFor(const std::string& command);

    // Throws Refused if there are any names.
    void throwIfRefused(const std::string& doing, const Names& refused) const;
    [[noreturn]] void failNotRepeated(const std::string& doing) const;

    const bool tracksHeld;
    detail::HeldCommands begun;
    Datarefs datarefs;
    Commands commands;
    wire::Number lastNumber = 0;
    detail::Link link;
};

} // namespace orvane::velmar
