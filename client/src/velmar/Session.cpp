#include "velmar/Session.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "velmar/Batches.h"
#include "velmar/Checks.h"
#include "velmar/Registering.h"

namespace orvane::velmar {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;
using detail::Connection;
using detail::Repeat;

// Registering twice does no harm, nor does unregistering.
constexpr Repeat kAlways{.whenTorn = true, .whenLost = true};

constexpr const char* kRegistering = "registering";
constexpr const char* kRegisteringAgain = "registering again";

ByteWriter beginRequest() {
    ByteWriter request;
    wire::writeIdentification(request);
    return request;
}

template <typename T>
std::span<const T> part(std::span<const T> all, Batch batch) {
    return all.subspan(batch.begin, batch.end - batch.begin);
}

} // namespace

Client::Session::Session(Options options)
    : link(std::move(options), [this](Connection& on) { declare(on); }) {}

// All names get new numbers, since nothing is known on a new connection.
void Client::Session::declare(Connection& on) {
    lastNumber = 0;
    std::vector<Dataref> wanted;
    for (auto& [name, entry] : datarefs) {
        entry.number = ++lastNumber;
        wanted.push_back(entry.dataref);
    }
    std::vector<std::string> names;
    for (auto& [name, number] : commands) {
        number = ++lastNumber;
        names.push_back(name);
    }
    for (const Batch batch : batchesOf(wanted)) {
        const auto some = part<Dataref>(wanted, batch);
        std::vector<NumberedDataref> numbered;
        for (const Dataref& dataref : some) {
            numbered.push_back({numberFor(dataref), &dataref});
        }
        const std::string doing = deed(kRegisteringAgain, some.front().name, some.size());
        const std::vector<bool> found = registerOn(on, doing, numbered);
        const auto missing = std::find(found.begin(), found.end(), false);
        if (missing != found.end()) {
            refuse(doing, some[static_cast<std::size_t>(missing - found.begin())].name);
        }
    }
    for (const Batch batch : batchesOf(names)) {
        const auto some = part<std::string>(names, batch);
        std::vector<NumberedCommand> numbered;
        for (const std::string& name : some) {
            numbered.push_back({numberFor(name), name});
        }
        const std::string doing = deed(kRegisteringAgain, some.front(), some.size());
        const std::vector<bool> found = registerOn(on, doing, numbered);
        const auto missing = std::find(found.begin(), found.end(), false);
        if (missing != found.end()) {
            refuse(doing, some[static_cast<std::size_t>(missing - found.begin())]);
        }
    }
}

void Client::Session::registerDatarefs(std::span<const Dataref> wanted) {
    std::vector<Dataref> changed;
    for (const Dataref& dataref : wanted) {
        checkDataref(dataref);
        const auto known = datarefs.find(dataref.name);
        if (known == datarefs.end() || known->second.dataref.type != dataref.type ||
            known->second.dataref.size != dataref.size) {
            changed.push_back(dataref);
        }
    }
    std::vector<std::string> refused;
    for (const Batch batch : batchesOf(changed)) {
        registerBatch(part<Dataref>(changed, batch), refused);
    }
    if (!refused.empty()) {
        refuse(kRegistering, refused.front());
    }
}

void Client::Session::registerBatch(std::span<const Dataref> batch,
                                    std::vector<std::string>& refused) {
    const std::string doing = deed(kRegistering, batch.front().name, batch.size());
    std::vector<NumberedDataref> numbered;
    std::vector<bool> found;
    link.carryOut(doing, kAlways, [&](Connection& on) {
        numbered.clear();
        for (const Dataref& dataref : batch) {
            numbered.push_back({numberFor(dataref), &dataref});
        }
        found = registerOn(on, doing, numbered);
    });
    for (std::size_t index = 0; index < batch.size(); ++index) {
        const Dataref& dataref = batch[index];
        if (found[index]) {
            datarefs[dataref.name] = {dataref, numbered[index].number};
        } else {
            refused.push_back(dataref.name);
        }
    }
}

void Client::Session::registerCommands(std::span<const std::string> wanted) {
    // Under a second number, a command would be reported under the first.
    std::set<std::string_view> seen;
    std::vector<std::string> names;
    for (const std::string& name : wanted) {
        checkName(name);
        if (seen.insert(name).second) {
            names.push_back(name);
        }
    }
    std::vector<std::string> refused;
    for (const Batch batch : batchesOf(names)) {
        registerBatch(part<std::string>(names, batch), refused);
    }
    if (!refused.empty()) {
        refuse(kRegistering, refused.front());
    }
}

void Client::Session::registerBatch(std::span<const std::string> batch,
                                    std::vector<std::string>& refused) {
    const std::string doing = deed(kRegistering, batch.front(), batch.size());
    std::vector<NumberedCommand> numbered;
    std::vector<bool> found;
    link.carryOut(doing, kAlways, [&](Connection& on) {
        numbered.clear();
        for (const std::string& name : batch) {
            numbered.push_back({numberFor(name), name});
        }
        found = registerOn(on, doing, numbered);
    });
    for (std::size_t index = 0; index < batch.size(); ++index) {
        if (found[index]) {
            commands[batch[index]] = numbered[index].number;
        } else {
            refused.push_back(batch[index]);
        }
    }
}

// Without a connection the server has forgotten all names anyway.
void Client::Session::unregisterDataref(std::string_view name) {
    const DatarefEntry& entry = find(name);
    const std::string doing = deed("unregistering", name, 1);
    if (link.isConnected()) {
        link.carryOut(doing, kAlways, [&](Connection& on) {
            ByteWriter request = beginRequest();
            wire::writeUnregisterDataref(request, entry.number);
            const Bytes answer = on.exchange(request.bytes(), doing, wire::kLongestReply);
            ByteReader reader(answer);
            wire::readUnregisterDatarefReply(reader, entry.number);
            reader.expectEnd();
        });
    }
    datarefs.erase(datarefs.find(name));
}

void Client::Session::unregisterCommand(std::string_view name) {
    const Commands::value_type& entry = findCommand(name);
    const std::string doing = deed("unregistering", name, 1);
    if (link.isConnected()) {
        link.carryOut(doing, kAlways, [&](Connection& on) {
            ByteWriter request = beginRequest();
            wire::writeUnregisterCommand(request, entry.second);
            const Bytes answer = on.exchange(request.bytes(), doing, wire::kLongestReply);
            ByteReader reader(answer);
            wire::readUnregisterCommandReply(reader, entry.second);
            reader.expectEnd();
        });
    }
    commands.erase(commands.find(name));
}

const Client::Session::DatarefEntry& Client::Session::find(std::string_view name) const {
    const auto entry = datarefs.find(name);
    if (entry == datarefs.end()) {
        throw std::out_of_range("the dataref " + std::string(name) + " is not registered");
    }
    return entry->second;
}

const Client::Session::Commands::value_type& Client::Session::findCommand(
    std::string_view name) const {
    const auto entry = commands.find(name);
    if (entry == commands.end()) {
        throw std::out_of_range("the command " + std::string(name) + " is not registered");
    }
    return *entry;
}

wire::Number Client::Session::numberFor(const Dataref& dataref) {
    const auto entry = datarefs.find(dataref.name);
    return entry != datarefs.end() ? entry->second.number : ++lastNumber;
}

wire::Number Client::Session::numberFor(const std::string& command) {
    const auto entry = commands.find(command);
    return entry != commands.end() ? entry->second : ++lastNumber;
}

void Client::Session::refuse(const std::string& doing, const std::string& name) const {
    throw Refused(link.place(doing) + "the simulator does not have " + name, name);
}

void Client::Session::failNotRepeated(const std::string& doing) const {
    throw ClosedError(link.place(doing) +
                      "expected it done, got a new connection; it was not repeated there");
}

} // namespace orvane::velmar
