#pragma once

#include <string>
#include <vector>

#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// What a page shows if its address names nothing: JSON with "names", "commands" and "axes".
class StartText final {
public:
    void AddName(const std::string& text);
    void AddCommand(const std::string& name);
    // The inputs as axes, and all datarefs and commands.
    void Add(const Profile& profile);

    std::string Text(const std::string& place, bool isReplay) const;

private:
    struct Axis {
        std::string name;
        std::string argument;
        std::string mapping;
    };

    void addInputs(const Profile& profile);
    void addOutput(const tarnel::Output& output, const std::string& unit);

    std::vector<std::string> names;
    std::vector<std::string> commands;
    std::vector<Axis> axes;
};

} // namespace orvane::tool
