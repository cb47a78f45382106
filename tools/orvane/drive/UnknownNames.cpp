#include "tools/orvane/drive/UnknownNames.h"

#include "tools/orvane/datarefs/DatarefReader.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "orvane/Errors.h"

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
    std::vector<std::string> left(names.begin(), names.end());
    Names unknown;
    while (!left.empty()) {
        try {
            client.registerCommands(left);
            break;
        } catch (const Refused& refused) {
            const auto one = std::find(left.begin(), left.end(), refused.refusedName());
            if (one == left.end()) {
                throw;
            }
            unknown.insert(*one);
            left.erase(left.begin(), one + 1);
        }
    }
    return unknown;
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
