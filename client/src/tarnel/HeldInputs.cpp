#include "tarnel/HeldInputs.h"

#include <set>

#include "tarnel/InputRecord.h"

namespace orvane::tarnel {

namespace {

constexpr std::int32_t kPressed = 1;
constexpr std::int32_t kReleased = 0;

} // namespace

void HeldInputs::follow(const Definitions& definitions) {
    inputs.clear();
    byAction.clear();
    for (const Input& input : definitions.inputs()) {
        if (inputRecordOf(input).isHeld) {
            byAction[input.action()].push_back(inputs.size());
            inputs.push_back({input});
        }
    }
}

HeldInputs::Effect HeldInputs::effectOf(const Input& input, std::int32_t value) {
    const InputRecord& record = inputRecordOf(input);
    if ((record.condition == InputRecord::NotWhenOne && value == 1) ||
        (record.condition == InputRecord::NotWhenZero && value == 0)) {
        return Effect::None;
    }
    const std::int32_t applied = record.usesFixed ? record.fixedInt : value;
    return applied == kPressed ? Effect::Press : Effect::Release;
}

bool HeldInputs::isConditional(const Input& input) {
    const std::int32_t condition = inputRecordOf(input).condition;
    return condition == InputRecord::NotWhilePositive || condition == InputRecord::NotWhileZero;
}

template <typename Step>
void HeldInputs::forEach(std::span<const Item> items, Step step) {
    if (inputs.empty()) {
        return;
    }
    for (const Item& item : items) {
        const auto action = byAction.find(item.action);
        if (action == byAction.end()) {
            continue;
        }
        for (const std::size_t index : action->second) {
            step(inputs[index], effectOf(inputs[index].input, item.value));
        }
    }
}

void HeldInputs::sending(std::span<const Item> items) {
    forEach(items, [](HeldInput& held, Effect effect) {
        if (effect == Effect::Press) {
            held.state = isConditional(held.input) ? State::Perhaps : State::Down;
        }
    });
}

void HeldInputs::sent(std::span<const Item> items) {
    forEach(items, [](HeldInput& held, Effect effect) {
        if (effect != Effect::None && !isConditional(held.input)) {
            held.state = effect == Effect::Press ? State::Down : State::Up;
        }
    });
}

std::vector<Item> HeldInputs::releases() const {
    std::vector<Item> items;
    std::set<ActionId> actions;
    for (const HeldInput& held : inputs) {
        if (held.state == State::Down && effectOf(held.input, kReleased) == Effect::Release &&
            actions.insert(held.input.action()).second) {
            items.push_back({held.input.action(), kReleased});
        }
    }
    return items;
}

void HeldInputs::addTo(detail::HeldCommands& held) const {
    for (const HeldInput& each : inputs) {
        if (each.state == State::Down) {
            held.begin(each.input.target());
        } else if (each.state == State::Perhaps) {
            held.beginPerhaps(each.input.target());
        }
    }
}

void HeldInputs::forgetAll() {
    for (HeldInput& held : inputs) {
        held.state = State::Up;
    }
}

} // namespace orvane::tarnel
