#pragma once

#include <memory>
#include <vector>

#include "protocols/tarnel/TarnelRecords.h"

class InputDefinition;

// What a Tarnel client drives: a value sent for the action goes to each of its definitions, in the
// order in which they were added. Owns the definitions.
class InputAction final {
public:
    explicit InputAction(int actionIdentifier);
    ~InputAction();
    InputAction(const InputAction&) = delete;
    InputAction& operator=(const InputAction&) = delete;

    int GetActionID() const;
    void AddInputDefinition(InputDefinitionStruct record);

    // `value` points to the 4 value bytes of an item; `nowMs` stamps the whole message.
    void ExecuteAction(void* value, unsigned long nowMs);

private:
    int actionIdentifier;
    std::vector<std::unique_ptr<InputDefinition>> definitions;
};
