#include "protocols/tarnel/InputAction.h"

#include "protocols/tarnel/InputDefinition.h"

InputAction::InputAction(int actionIdentifier) : actionIdentifier(actionIdentifier) {}

InputAction::~InputAction() = default;

int InputAction::GetActionID() const {
    return actionIdentifier;
}

void InputAction::AddInputDefinition(InputDefinitionStruct record) {
    definitions.push_back(std::make_unique<InputDefinition>(record));
}

void InputAction::ExecuteAction(void* value, unsigned long nowMs) {
    for (const auto& definition : definitions) {
        definition->ExecuteAction(value, nowMs);
    }
}
