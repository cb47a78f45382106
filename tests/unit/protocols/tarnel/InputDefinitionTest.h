#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InputTargetsFixture.h"
#include "protocols/tarnel/InputDefinition.h"

// A definition that acts on the targets of the simulator.
class InputDefinitionTest : public InputTargetsFixture {
protected:
    void define(const InputRecord& record) {
        definition = std::make_unique<InputDefinition>(toRecord(record));
        simulator.Recorder().Clear();
    }

    void execute(std::int32_t value, unsigned long nowMs = 1'000'000) {
        Bytes bytes = i32(value);
        definition->ExecuteAction(bytes.data(), nowMs);
    }

    void setRange(float minimum, float maximum) {
        simulator.Datarefs().SetFloat("sim/minimum", minimum);
        simulator.Datarefs().SetFloat("sim/maximum", maximum);
    }

    // The names looked up so far: "function(name)".
    std::vector<std::string> lookUps() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            found.push_back(call.function + "(" + call.arguments + ")");
        }
        return found;
    }

    std::unique_ptr<InputDefinition> definition;
};
