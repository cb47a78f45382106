#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Definitions.h"
#include "tools/orvane/drive/Motion.h"

namespace orvane::tool {

// A name under which a profile takes values, such as a column of a table. All inputs of this name
// get them.
struct ProfileInput {
    std::string name;
    tarnel::ActionId action = 0;
    // Only float datarefs that follow the values; a waveform may move these.
    bool isAxis = false;
    std::optional<Motion> motion{};
    // How values are mapped: "-1..1, float". Several inputs of the same name are joined.
    std::string mapping{};
    // The array element that the first of them writes to.
    std::optional<std::int32_t> element{};
    // Whether all of them are commands, and whether one is held down.
    bool isCommand = false;
    bool isHeld = false;
};

struct ProfileOutput {
    std::string name;
    tarnel::OutputId id = 0;
    std::string unit{}; // only shown
};

// A name that a session expects the simulator to have.
struct ExpectedName {
    std::string name;
    bool isCommand = false;
    std::string user{}; // input "pitch"
};

// A session as a user describes it in a TOML file: the server, the inputs and the outputs.
struct Profile {
    static constexpr double kDefaultRate = 50;

    std::optional<std::string> host;
    std::optional<std::uint16_t> port;
    double rate = kDefaultRate; // exchanges per second
    std::vector<ProfileInput> inputs;
    std::vector<ProfileOutput> outputs;
    tarnel::Definitions definitions;
    // All names except those that the plugin creates for outputs.
    std::vector<ExpectedName> expectedNames;

    // Whether inputs use names that outputs of the same session may have to create first.
    bool HasInputsOnOwnNames() const;
    // Null if there is no input of this name.
    const ProfileInput* FindInput(const std::string& name) const;
};

} // namespace orvane::tool
