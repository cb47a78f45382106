#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Definitions.h"
#include "tools/orvane/drive/Motion.h"

namespace orvane::tool {

// A name under which a profile takes values: a column of a table, say. All inputs of this name get
// them.
struct ProfileInput {
    std::string name;
    tarnel::ActionId action = 0;
    // Nothing but float datarefs that follow the values: what a waveform may move.
    bool isAxis = false;
    std::optional<Motion> motion{};
    // What becomes of a value, in a few words: "-1..1, float". One after another where several
    // inputs share the name.
    std::string way{};
    // Of an array that the first of them writes to.
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

// Whether the plugin makes what an output names.
bool isOwnName(const std::string& name);

// A session as a user describes it in a TOML file: where the server is, what goes in, what comes
// out.
struct Profile {
    static constexpr double kUsualRate = 50;

    std::optional<std::string> host;
    std::optional<std::uint16_t> port;
    double rate = kUsualRate; // exchanges per second
    std::vector<ProfileInput> inputs;
    std::vector<ProfileOutput> outputs;
    tarnel::Definitions definitions;
    // All but those of outputs that the plugin makes.
    std::vector<ExpectedName> expectedNames;

    // Whether inputs use names that outputs of the same session may have to make first.
    bool HasInputsOnOwnNames() const;
    // Null when there is none of this name.
    const ProfileInput* FindInput(const std::string& name) const;
};

} // namespace orvane::tool
