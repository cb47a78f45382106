#include "tools/orvane/datarefs/DatarefReader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string>
#include <utility>

#include <fmt/core.h>

#include "orvane/Errors.h"
#include "tools/orvane/datarefs/Numbers.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

using velmar::Type;
using velmar::Value;

// What a dataref may be if it reads as 0 as a float.
constexpr std::array<TypeAndSize, 3> kCandidates{
    {{Type::Int},
     {Type::FloatArray, DatarefReader::kProbedElements},
     {Type::IntArray, DatarefReader::kProbedElements}}};

// The number of elements up to the last that is not 0.
std::uint32_t elementsInUse(const Value& value) {
    std::uint32_t count = 0;
    std::uint32_t inUse = 0;
    forEachNumber(value, [&](auto number) {
        ++count;
        inUse = number != 0 ? count : inUse;
    });
    return inUse;
}

} // namespace

bool isZero(const Value& value) {
    return elementsInUse(value) == 0;
}

std::vector<std::size_t> registerKnown(velmar::Client& client,
                                       const std::vector<velmar::Dataref>& datarefs) {
    std::vector<std::size_t> missing;
    try {
        client.registerDatarefs(datarefs);
    } catch (const Refused& refused) {
        const std::set<std::string> names(refused.refusedNames().begin(),
                                          refused.refusedNames().end());
        for (std::size_t i = 0; i < datarefs.size(); ++i) {
            if (names.contains(datarefs[i].name)) {
                missing.push_back(i);
            }
        }
    }
    return missing;
}

void reportUnknownDataref(const std::string& name) {
    tell(fmt::format("{}: the simulator has no such dataref", name));
}

DatarefReader::DatarefReader(velmar::Client& client, std::vector<DatarefArgument> arguments)
    : client(client) {
    std::vector<velmar::Dataref> datarefs;
    std::transform(arguments.begin(), arguments.end(), std::back_inserter(datarefs),
                   [](const DatarefArgument& argument) { return argument.Dataref(); });
    const std::vector<std::size_t> missing = registerKnown(client, datarefs);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (std::binary_search(missing.begin(), missing.end(), i)) {
            unknown.push_back(arguments[i].name);
            continue;
        }
        isOpen.push_back(!arguments[i].type);
        arguments[i].SetType({datarefs[i].type, datarefs[i].size});
        names.push_back(datarefs[i].name);
        known.push_back(std::move(arguments[i]));
    }
    wasOpen = isOpen;
}

void DatarefReader::ReportUnknown() const {
    std::for_each(unknown.begin(), unknown.end(), reportUnknownDataref);
}

std::vector<Value> DatarefReader::Read() {
    std::vector<Value> values = readWhole();
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = known[i].ValueIn(values[i]);
    }
    return values;
}

// Whole arrays, even if only some of their elements are named.
std::vector<Value> DatarefReader::readWhole() {
    return names.empty() ? std::vector<Value>() : client.read(names);
}

void DatarefReader::FindTypes() {
    for (std::size_t candidate = 0; candidate < kCandidates.size(); ++candidate) {
        probe(candidate);
    }
    readOpenAsFloats();
}

void DatarefReader::TryAnotherType() {
    probe(nextCandidate);
    readOpenAsFloats();
    nextCandidate = (nextCandidate + 1) % kCandidates.size();
}

void DatarefReader::probe(std::size_t candidate) {
    const TypeAndSize& type = kCandidates[candidate];
    std::vector<std::size_t> places;
    for (const std::size_t place : openZeros()) {
        // Elements can only belong to an array.
        if (!known[place].elements || type.size > 0) {
            places.push_back(place);
        }
    }
    if (places.empty()) {
        return;
    }
    registerAs(places, type);
    const std::vector<Value> values = readWhole();
    for (const std::size_t place : places) {
        if (isZero(values[place])) {
            continue;
        }
        isOpen[place] = false;
        if (type.size > 0) {
            registerAs({place}, {type.type, elementsInUse(values[place])});
        }
    }
}

void DatarefReader::readOpenAsFloats() {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < known.size(); ++i) {
        const Type type = known[i].Dataref().type;
        const bool isUsual = type == Type::Float || (known[i].elements && type == Type::FloatArray);
        if (isOpen[i] && !isUsual) {
            places.push_back(i);
        }
    }
    registerAs(places, {Type::Float});
}

std::vector<std::size_t> DatarefReader::openZeros() {
    std::vector<std::size_t> places;
    if (std::find(isOpen.begin(), isOpen.end(), true) == isOpen.end()) {
        return places;
    }
    const std::vector<Value> values = readWhole();
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (isOpen[i] && isZero(values[i])) {
            places.push_back(i);
        } else {
            isOpen[i] = false;
        }
    }
    return places;
}

void DatarefReader::registerAs(const std::vector<std::size_t>& places, const TypeAndSize& type) {
    std::vector<velmar::Dataref> datarefs;
    for (const std::size_t place : places) {
        known[place].SetType(type);
        datarefs.push_back(known[place].Dataref());
    }
    if (!datarefs.empty()) {
        client.registerDatarefs(datarefs);
    }
}

} // namespace orvane::tool
