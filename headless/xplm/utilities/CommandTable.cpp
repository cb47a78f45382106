#include "headless/xplm/utilities/CommandTable.h"

#include <algorithm>

namespace headless {

Command& CommandTable::Define(const std::string& name, const std::string& description) {
    std::unique_ptr<Command>& command = commands[name];
    if (command == nullptr) {
        command = std::make_unique<Command>();
        command->name = name;
        byHandle[command.get()] = command.get();
    }
    command->description = description;
    return *command;
}

Command* CommandTable::Lookup(std::string_view name) const {
    const auto found = commands.find(name);
    return found == commands.end() ? nullptr : found->second.get();
}

std::vector<std::string> CommandTable::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, command] : commands) {
        names.push_back(name);
    }
    return names;
}

void CommandTable::ContinueHeld() {
    // Handlers may create commands; a map's elements stay where they are.
    for (const auto& [name, command] : commands) {
        if (command->held > 0) {
            raise(*command, xplm_CommandContinue);
        }
    }
}

std::size_t CommandTable::DropOf(XPLMPluginID plugin) {
    std::size_t dropped = 0;
    for (const auto& [name, command] : commands) {
        dropped += std::erase_if(command->handlers, [&](const CommandHandler& handler) {
            return handler.owner == plugin;
        });
    }
    return dropped;
}

std::size_t CommandTable::ReleaseOf(XPLMPluginID plugin) {
    std::size_t held = 0;
    for (const auto& [name, command] : commands) {
        held += std::erase(command->holders, plugin);
    }
    return held;
}

XPLMCommandRef CommandTable::Find(const char* name) {
    if (name == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMFindCommand", "name");
        return nullptr;
    }
    Command* found = Lookup(name);
    recorder.Record("XPLMFindCommand", found, name);
    if (found == nullptr) {
        recorder.Refuse(Refusal::UnknownName, "XPLMFindCommand", name);
    }
    return found;
}

XPLMCommandRef CommandTable::Create(const char* name, const char* description) {
    if (name == nullptr || description == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMCreateCommand", "name or description");
        return nullptr;
    }
    Command* known = Lookup(name);
    Command* command = known != nullptr ? known : &Define(name, description);
    recorder.Record("XPLMCreateCommand", command, name, description);
    return command;
}

void CommandTable::RegisterHandler(XPLMCommandRef handle, XPLMCommandCallback_f callback,
                                   bool before, void* refcon) {
    constexpr const char* kFunction = "XPLMRegisterCommandHandler";
    Command* command = resolve(handle, kFunction);
    if (command == nullptr) {
        return;
    }
    if (callback == nullptr) {
        recorder.Refuse(Refusal::NullHandle, kFunction, "callback");
        return;
    }
    recorder.Record(kFunction, handle, command->name, before ? 1 : 0);
    const CommandHandler added{callback, before, refcon, context.Plugin()};
    auto& handlers = command->handlers;
    if (std::find(handlers.begin(), handlers.end(), added) != handlers.end()) {
        recorder.Refuse(Refusal::AlreadyRegistered, kFunction, command->name.c_str());
        return;
    }
    handlers.push_back(added);
}

void CommandTable::UnregisterHandler(XPLMCommandRef handle, XPLMCommandCallback_f callback,
                                     bool before, void* refcon) {
    constexpr const char* kFunction = "XPLMUnregisterCommandHandler";
    Command* command = resolve(handle, kFunction);
    if (command == nullptr) {
        return;
    }
    recorder.Record(kFunction, handle, command->name, before ? 1 : 0);
    auto& handlers = command->handlers;
    const CommandHandler wanted{callback, before, refcon, context.Plugin()};
    const auto found = std::find(handlers.begin(), handlers.end(), wanted);
    if (found == handlers.end()) {
        recorder.Refuse(Refusal::NotRegistered, kFunction, command->name.c_str());
        return;
    }
    handlers.erase(found);
}

void CommandTable::Begin(XPLMCommandRef handle) {
    if (Command* command = resolve(handle, "XPLMCommandBegin")) {
        recorder.Record("XPLMCommandBegin", handle, command->name);
        ++command->held;
        command->holders.push_back(context.Plugin());
        raise(*command, xplm_CommandBegin);
    }
}

void CommandTable::End(XPLMCommandRef handle) {
    Command* command = resolve(handle, "XPLMCommandEnd");
    if (command == nullptr) {
        return;
    }
    recorder.Record("XPLMCommandEnd", handle, command->name);
    auto& holders = command->holders;
    const auto holder = std::find(holders.begin(), holders.end(), context.Plugin());
    if (holder != holders.end()) {
        holders.erase(holder);
    }
    if (command->held > 0) {
        --command->held;
    } else {
        recorder.Refuse(Refusal::UnbalancedEnd, "XPLMCommandEnd", command->name.c_str());
    }
    raise(*command, xplm_CommandEnd);
}

void CommandTable::Once(XPLMCommandRef handle) {
    if (Command* command = resolve(handle, "XPLMCommandOnce")) {
        recorder.Record("XPLMCommandOnce", handle, command->name);
        raise(*command, xplm_CommandBegin);
        raise(*command, xplm_CommandEnd);
    }
}

Command* CommandTable::resolve(XPLMCommandRef handle, const char* function) {
    if (handle == nullptr) {
        recorder.Refuse(Refusal::NullHandle, function, "command");
        return nullptr;
    }
    const auto found = byHandle.find(handle);
    if (found == byHandle.end()) {
        recorder.Refuse(Refusal::UnknownHandle, function, "command");
        return nullptr;
    }
    return found->second;
}

void CommandTable::raise(Command& command, XPLMCommandPhase phase) {
    const auto counted = static_cast<std::size_t>(phase);
    ++command.pressed.at(counted);
    if (!runHandlers(command, phase, true)) {
        return;
    }
    ++command.passedOn.at(counted);
    if (command.action) {
        command.action(phase);
    }
    runHandlers(command, phase, false);
}

// Uses a copy, because handlers may come and go while they run; skips those that are gone.
bool CommandTable::runHandlers(Command& command, XPLMCommandPhase phase, bool before) {
    const std::vector<CommandHandler> walked = command.handlers;
    for (const CommandHandler& handler : walked) {
        const auto& now = command.handlers;
        const bool gone = std::find(now.begin(), now.end(), handler) == now.end();
        if (handler.before != before || gone || !context.IsActive(handler.owner)) {
            continue;
        }
        const PluginContext::Call call(context, handler.owner, "command handler");
        if (call.Into(handler.callback, &command, phase, handler.refcon) == 0) {
            return false;
        }
    }
    return true;
}

} // namespace headless
