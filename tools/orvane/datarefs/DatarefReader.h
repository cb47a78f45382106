#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// Whether all numbers in it are 0.
bool isZero(const velmar::Value& value);

// Registers datarefs. What the simulator does not have is left out; its places in `datarefs` are
// returned, in ascending order.
std::vector<std::size_t> registerKnown(velmar::Client& client,
                                       const std::vector<velmar::Dataref>& datarefs);

// Reads datarefs that a user has named, and finds the types of those that came without.
//
// The server does not tell a dataref's type, and one that is read as another than its own is 0. A
// dataref without a type is therefore a float until it has been seen with a value other than 0 as
// an int, or as an array. Borrows the client.
class DatarefReader final {
public:
    // An array that is found has as many elements as are not 0, of the first ones of these.
    static constexpr std::uint32_t kElementsLookedAt = 64;

    // Registers them.
    DatarefReader(velmar::Client& client, std::vector<DatarefArgument> arguments);

    // The datarefs that the simulator has, with the types that they are read as.
    const std::vector<DatarefArgument>& Known() const { return known; }
    // The names of the others.
    const std::vector<std::string>& Unknown() const { return unknown; }

    // The values, in the order of Known().
    std::vector<velmar::Value> Read();

    // Tries all other types on those that have none and are 0. Takes several exchanges.
    void FindTypes();
    // Tries the next one of the other types; to be called again and again.
    void TryAnotherType();

    // Whether this type was found and not given.
    bool IsGuessed(std::size_t index) const { return wasOpen[index]; }
    // Whether no type was given, and all were 0 so far.
    bool IsZeroInEveryType(std::size_t index) const { return isOpen[index]; }

private:
    std::vector<velmar::Value> readWhole();
    void look(std::size_t candidate);
    void readOpenAsFloats();
    std::vector<std::size_t> openAndZero();
    void registerAs(const std::vector<std::size_t>& places, const TypeAndSize& type);

    velmar::Client& client;
    std::vector<DatarefArgument> known;
    std::vector<std::string> names;
    std::vector<std::string> unknown;
    std::vector<bool> isOpen; // no type was given, and none was found
    std::vector<bool> wasOpen;
    std::size_t nextCandidate = 0;
};

} // namespace orvane::tool
