#pragma once

#include <cstdint>
#include <vector>

#include "XPLMUtilities.h"
#include "bench/DataMessageCase.h"

// Items that run commands, one for each.
class CommandCase : public DataMessageCase {
protected:
    CommandCase(std::int64_t count, bool hold) {
        std::vector<InputRecord> records;
        for (const auto& name : world.DefineCommands(count)) {
            records.push_back(
                {.targetType = RecordType::Command, .hold = hold ? 1 : 0, .target = name});
            commands.push_back(XPLMFindCommand(name.c_str()));
        }
        define(records);
        press = messageOf(commands.size(), [](std::size_t) { return 1; });
        release = messageOf(commands.size(), [](std::size_t) { return 0; });
    }

    std::vector<XPLMCommandRef> commands;
    Bytes press;
    Bytes release;
};

class CommandOnceItems final : public CommandCase {
public:
    explicit CommandOnceItems(std::int64_t count) : CommandCase(count, false) {}

    void Check() {
        world.RequireSameCalls([&] { Ours(); }, [&] { Floor(); });
    }
    void Ours() { feed(press); }
    void Floor() {
        for (const XPLMCommandRef command : commands) {
            XPLMCommandOnce(command);
        }
    }
};

// Every other message presses, the others release.
class CommandHoldItems final : public CommandCase {
public:
    explicit CommandHoldItems(std::int64_t count) : CommandCase(count, true) {}

    void Check() {
        const auto twice = [](const auto& side) {
            return [&side] {
                side();
                side();
            };
        };
        world.RequireSameCalls(twice([&] { Ours(); }), twice([&] { Floor(); }));
    }

    void Ours() {
        pressed = !pressed;
        feed(pressed ? press : release);
    }

    void Floor() {
        pressed = !pressed;
        for (const XPLMCommandRef command : commands) {
            if (pressed) {
                XPLMCommandBegin(command);
            } else {
                XPLMCommandEnd(command);
            }
        }
    }

private:
    bool pressed = false;
};
