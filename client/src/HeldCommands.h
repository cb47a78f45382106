#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvane::detail {

// An account of commands that were begun and not ended. Begins nest in the simulator: each needs an
// end of its own.
class HeldCommands final {
public:
    struct Times {
        int begun = 0;
        int perhaps = 0; // it is not known whether the server began or ended them
    };

    void begin(const std::string& name) { ++commands[name].begun; }
    void beginPerhaps(const std::string& name) { ++commands[name].perhaps; }
    // One of those that were begun, if there is one.
    void end(const std::string& name);
    void forget(const std::string& name) { commands.erase(name); }

    std::vector<std::string> names() const;
    const std::map<std::string, Times>& all() const { return commands; }

private:
    std::map<std::string, Times> commands;
};

} // namespace orvane::detail
