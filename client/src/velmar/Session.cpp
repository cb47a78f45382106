#include "velmar/Session.h"

#include <set>
#include <stdexcept>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "Texts.h"
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

} // namespace

Client::Session::Session(Options options)
    : tracksHeld(options.releaseHeld), link(std::move(options), *this) {}

Client::Session::~Session() {
    link.closeForGood();
}

void Client::Session::declare(Connection& on) {
    lastNumber = 0;
    std::vector<Dataref> wantedDatarefs;
    for (auto& [name, entry] : datarefs) {
        entry.number = ++lastNumber;
        wantedDatarefs.push_back(entry.dataref);
    }
    std::vector<std::string> wantedCommands;
    for (auto& [name, number] : commands) {
        number = ++lastNumber;
        wantedCommands.push_back(name);
    }
    Names refused;
    declareAll<Dataref>(on, wantedDatarefs, refused);
    declareAll<std::string>(on, wantedCommands, refused);
    throwIfRefused("registering again", refused);
}

template <typename T>
void Client::Session::declareAll(Connection& on, std::span<const T> wanted, Names& refused) {
    for (const Batch batch : batchesOf(wanted)) {
        const auto some = wanted.subspan(batch.begin, batch.end - batch.begin);
        const std::string doing = describe("registering again", nameOf(some.front()), some.size());
        const std::vector<bool> found = registerOn(on, doing, withNumbers(some));
        for (std::size_t index = 0; index < some.size(); ++index) {
            if (!found[index]) {
                refused.push_back(nameOf(some[index]));
            }
        }
    }
}

template <typename T>
std::vector<Numbered<T>> Client::Session::withNumbers(std::span<const T> batch) {
    std::vector<Numbered<T>> numbered;
    for (const T& wanted : batch) {
        numbered.push_back({numberFor(wanted), &wanted});
    }
    return numbered;
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
    registerAll<Dataref>(changed);
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
    registerAll<std::string>(names);
}

template <typename T>
void Client::Session::registerAll(std::span<const T> wanted) {
    Names refused;
    for (const Batch batch : batchesOf(wanted)) {
        const auto some = wanted.subspan(batch.begin, batch.end - batch.begin);
        const std::string doing = describe(kRegistering, nameOf(some.front()), some.size());
        std::vector<Numbered<T>> numbered;
        std::vector<bool> found;
        link.carryOut(doing, kAlways, [&](Connection& on) {
            numbered = withNumbers(some);
            found = registerOn(on, doing, numbered);
        });
        for (std::size_t index = 0; index < some.size(); ++index) {
            if (found[index]) {
                note(some[index], numbered[index].number);
            } else {
                refused.push_back(nameOf(some[index]));
            }
        }
    }
    throwIfRefused(kRegistering, refused);
}

void Client::Session::note(const Dataref& dataref, wire::Number number) {
    datarefs[dataref.name] = {dataref, number};
}

void Client::Session::note(const std::string& command, wire::Number number) {
    commands[command] = number;
}

void Client::Session::unregisterDataref(std::string_view name) {
    const DatarefEntry& entry = find(name);
    unregister(name, entry.number, wire::writeUnregisterDataref, wire::readUnregisterDatarefReply);
    datarefs.erase(datarefs.find(name));
}

void Client::Session::unregisterCommand(std::string_view name) {
    const Commands::value_type& entry = findCommand(name);
    unregister(name, entry.second, wire::writeUnregisterCommand, wire::readUnregisterCommandReply);
    commands.erase(commands.find(name));
}

template <typename WriteRequest, typename ReadReply>
void Client::Session::unregister(std::string_view name, const wire::Number& number,
                                 WriteRequest writeRequest, ReadReply readReply) {
    // Without a connection the server has forgotten all names anyway.
    if (!link.isConnected()) {
        return;
    }
    const std::string doing = describe("unregistering", name, 1);
    link.carryOut(doing, kAlways, [&](Connection& on) {
        ByteWriter request = wire::beginRequest();
        writeRequest(request, number);
        const Bytes answer = on.exchange(request.bytes(), doing, wire::kLongestReply);
        ByteReader reader(answer);
        readReply(reader, number);
        reader.expectEnd();
    });
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

void Client::Session::throwIfRefused(const std::string& doing, const Names& refused) const {
    if (!refused.empty()) {
        throw Refused(link.place(doing) + "the simulator does not have " + detail::listed(refused),
                      refused);
    }
}

void Client::Session::failNotRepeated(const std::string& doing) const {
    throw ClosedError(link.place(doing) +
                      "the connection was lost; reconnected, but this was not repeated");
}

} // namespace orvane::velmar
