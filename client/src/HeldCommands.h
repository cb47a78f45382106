#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvane::detail {

// Counts commands that were begun and not ended. Begins nest in the simulator: each needs its own
// end.
class HeldCommands final {
public:
    struct Times {
        int begun = 0;
        int perhaps = 0; // the server may have begun or ended these
    };

    void begin(const std::string& name) { ++commands[name].begun; }
    void beginPerhaps(const std::string& name) { ++commands[name].perhaps; }
    // Counts one end, if any was begun.
    void end(const std::string& name);
    void forget(const std::string& name) { commands.erase(name); }

    std::vector<std::string> names() const;
    const std::map<std::string, Times>& all() const { return commands; }

private:
    std::map<std::string, Times> commands;
};

} // namespace orvane::detail
