#include "tools/orvane/drive/UnknownNames.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "orvane/Errors.h"
#include "tools/orvane/datarefs/DatarefReader.h"

namespace orvane::tool {

namespace {

using Names = std::set<std::string>;

Names namesOf(const Profile& profile, bool isCommand) {
    Names names;
    for (const ExpectedName& each : profile.expectedNames) {
        if (each.isCommand == isCommand) {
            names.insert(each.name);
        }
    }
    return names;
}

Names unknownDatarefs(velmar::Client& client, const Names& names) {
    std::vector<velmar::Dataref> datarefs;
    for (const std::string& name : names) {
        datarefs.push_back({.name = name});
    }
    Names unknown;
    for (const std::size_t place : registerKnown(client, datarefs)) {
        unknown.insert(datarefs[place].name);
    }
    return unknown;
}

Names unknownCommands(velmar::Client& client, const Names& names) {
    try {
        client.registerCommands(std::vector<std::string>(names.begin(), names.end()));
        return {};
    } catch (const Refused& refused) {
        return {refused.refusedNames().begin(), refused.refusedNames().end()};
    }
}

} // namespace

std::vector<ExpectedName> findUnknownNames(velmar::Client& client, const Profile& profile) {
    const Names datarefs = unknownDatarefs(client, namesOf(profile, false));
    const Names commands = unknownCommands(client, namesOf(profile, true));
    std::vector<ExpectedName> unknown;
    std::copy_if(profile.expectedNames.begin(), profile.expectedNames.end(),
                 std::back_inserter(unknown), [&](const ExpectedName& each) {
                     return (each.isCommand ? commands : datarefs).contains(each.name);
                 });
    return unknown;
}

} // namespace orvane::tool
