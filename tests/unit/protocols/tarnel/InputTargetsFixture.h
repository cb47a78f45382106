#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "protocols/tarnel/TarnelRecords.h"
#include "support/TarnelMessages.h"

// The plugin's record, as it comes off the wire.
inline InputDefinitionStruct toRecord(const InputRecord& fields) {
    const Bytes bytes = toBytes(fields);
    InputDefinitionStruct record{};
    std::memcpy(&record, bytes.data(), bytes.size());
    return record;
}

// A simulator with one target of each kind, datarefs for ranges and conditions, and its calls
// recorded.
class InputTargetsFixture : public testing::Test {
protected:
    InputTargetsFixture() {
        define("sim/int", xplmType_Int);
        define("sim/float", xplmType_Float);
        define("sim/ints", xplmType_IntArray, 8);
        define("sim/floats", xplmType_FloatArray, 8);
        define("sim/minimum", xplmType_Float);
        define("sim/maximum", xplmType_Float);
        define("sim/minimums", xplmType_FloatArray, 4);
        define("sim/maximums", xplmType_FloatArray, 4);
        define("sim/condition_int", xplmType_Int);
        define("sim/condition_float", xplmType_Float);
        define("sim/condition_ints", xplmType_IntArray, 4);
        define("sim/condition_floats", xplmType_FloatArray, 4);
        simulator.Commands().Define("sim/command", "a command");
        simulator.Recorder().Enable();
    }

    // The calls to the simulator since the last time, in order: "function(arguments)". Without
    // reads and look-ups.
    std::vector<std::string> effects() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            if (call.function.starts_with("XPLMSet") || call.function.starts_with("XPLMCommand")) {
                found.push_back(call.function + "(" + call.arguments + ")");
            }
        }
        simulator.Recorder().Clear();
        return found;
    }

    std::uint32_t floatBits() {
        return std::bit_cast<std::uint32_t>(simulator.Datarefs().GetFloat("sim/float"));
    }
    std::uint32_t elementBits(std::size_t index) {
        return std::bit_cast<std::uint32_t>(
            simulator.Datarefs().GetFloatArray("sim/floats").at(index));
    }

    headless::Simulator simulator;

private:
    void define(const char* name, XPLMDataTypeID types, int elements = 0) {
        simulator.Datarefs().Define({.name = name, .types = types, .elements = elements});
    }
};
