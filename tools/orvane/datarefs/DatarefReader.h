#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// Whether all its numbers are 0.
bool isZero(const velmar::Value& value);

// Registers those datarefs that the simulator has. Returns the indices of the others in ascending
// order.
std::vector<std::size_t> registerKnown(velmar::Client& client,
                                       const std::vector<velmar::Dataref>& datarefs);

// "NAME: the simulator has no such dataref".
void reportUnknownDataref(const std::string& name);

// Reads datarefs that a user has named, and finds the types of those given without one.
//
// The server does not report a dataref's type, and reading it as a wrong type gives 0. A dataref
// without a type is therefore a float until it reads as something other than 0 as an int or as an
// array. Borrows the client.
class DatarefReader final {
public:
    // A guessed array has its elements up to the last that is not 0, among this many.
    static constexpr std::uint32_t kProbedElements = 64;

    // Registers them.
    DatarefReader(velmar::Client& client, std::vector<DatarefArgument> arguments);

    // The datarefs that the simulator has, with the types that they are read as.
    const std::vector<DatarefArgument>& Known() const { return known; }
    // The names that the simulator does not have.
    const std::vector<std::string>& Unknown() const { return unknown; }
    // Prints a line for each of them.
    void ReportUnknown() const;

    // The values, in the order of Known().
    std::vector<velmar::Value> Read();

    // Tries all other types on datarefs that have no type and read as 0. Takes several exchanges.
    void FindTypes();
    // Tries only the next of the other types; call it repeatedly.
    void TryAnotherType();

    // Whether this type was guessed, not given.
    bool IsGuessed(std::size_t index) const { return wasOpen[index]; }
    // Whether no type was given and all have read as 0 so far.
    bool IsZeroInEveryType(std::size_t index) const { return isOpen[index]; }

private:
    std::vector<velmar::Value> readWhole();
    void probe(std::size_t candidate);
    void readOpenAsFloats();
    std::vector<std::size_t> openZeros();
    void registerAs(const std::vector<std::size_t>& places, const TypeAndSize& type);

    velmar::Client& client;
    std::vector<DatarefArgument> known;
    std::vector<std::string> names;
    std::vector<std::string> unknown;
    std::vector<bool> isOpen; // no type was given or found
    std::vector<bool> wasOpen;
    std::size_t nextCandidate = 0;
};

} // namespace orvane::tool
