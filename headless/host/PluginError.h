#pragma once

#include <stdexcept>

namespace headless {

// A plugin cannot be loaded or refuses to start; what() is one line.
class PluginError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace headless
