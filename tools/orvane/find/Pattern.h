#pragma once

#include <string>

namespace orvane::tool {

// What a user looks for, whatever the case of its letters: a glob (with "*", "?" or "[") for whole
// names, else a part of a name or of its description.
class Pattern final {
public:
    explicit Pattern(const std::string& text);

    bool Matches(const std::string& name, const std::string& description) const;

private:
    const std::string lowered;
    const bool isGlob;
};

} // namespace orvane::tool
