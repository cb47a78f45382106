#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "headless/host/LoadedPlugins.h"

namespace headless {

// Functions of the SDK that fail on purpose, to see what plugins make of it.
//
// An order is "FUNCTION" or "FUNCTION:N": from the Nth call on, the first when there is no N,
// counted over all plugins, the function does nothing and answers what it answers when it fails. It
// holds from a plugin's start on, and for what the plugin is linked to, not for what it looks up.
class Failures final {
public:
    // Throws std::invalid_argument for an order that cannot be read.
    Failures(Simulator& failingSimulator, LoadedPlugins& loadedPlugins,
             const std::vector<std::string>& orders);
    ~Failures();
    Failures(const Failures&) = delete;
    Failures& operator=(const Failures&) = delete;

private:
    struct Order {
        std::string function;
        // Calls that still succeed.
        std::int64_t left;
    };

    static Order parse(const std::string& text);
    void count(const char* function);
    void begin(const Order& order);

    Simulator& simulator;
    LoadedPlugins& plugins;
    std::vector<Order> pending;
};

} // namespace headless
