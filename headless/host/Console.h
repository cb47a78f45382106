#pragma once

#include <functional>
#include <string>

#include "headless/host/Session.h"

namespace headless {

// A line of text in, one line of reply out: how tests and curious people drive a session.
//
// Every command has exactly one reply; one that cannot be carried out has "error: " and the reason.
// What the commands are is told by "help". Borrows the session.
class Console final {
public:
    // `interrupted` is asked on every frame of a long run of frames; true ends it.
    Console(Session& drivenSession, std::function<bool()> interrupted);

    std::string Execute(const std::string& line);

    bool QuitRequested() const { return quit; }

private:
    using Handler = std::string (Console::*)(const std::string& arguments);

    struct Entry {
        const char* name;
        Handler handler;
        const char* usage;
    };

    static const Entry* find(const std::string& name);

    std::string get(const std::string& arguments);
    std::string set(const std::string& arguments);
    std::string command(const std::string& arguments);
    std::string events(const std::string& arguments);
    std::string handlers(const std::string& arguments);
    std::string aircraft(const std::string& arguments);
    std::string message(const std::string& arguments);
    std::string pause(const std::string& arguments);
    std::string step(const std::string& arguments);
    std::string run(const std::string& arguments);
    std::string frames(const std::string& arguments);
    std::string worstFrame(const std::string& arguments);
    std::string residentMemory(const std::string& arguments);
    std::string fileDescriptors(const std::string& arguments);
    std::string plugins(const std::string& arguments);
    std::string disable(const std::string& arguments);
    std::string enable(const std::string& arguments);
    std::string stop(const std::string& arguments);
    std::string start(const std::string& arguments);
    std::string reload(const std::string& arguments);
    std::string help(const std::string& arguments);
    std::string end(const std::string& arguments);

    static const Entry kEntries[];

    Session& session;
    std::function<bool()> isInterrupted;
    bool quit = false;
};

} // namespace headless
