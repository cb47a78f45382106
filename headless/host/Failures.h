#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "headless/host/LoadedPlugins.h"

namespace headless {

// Makes functions of the SDK fail on purpose, to test how plugins handle it.
//
// An order is "FUNCTION" or "FUNCTION:N". From the Nth call on (the first if there is no N),
// counted over all plugins, the function does nothing and returns its failure value. This holds
// from a plugin's start on, and only for functions that the plugin is linked to, not for those that
// it looks up.
class Failures final {
public:
    // Throws std::invalid_argument if an order cannot be parsed.
    Failures(Simulator& failingSimulator, LoadedPlugins& loadedPlugins,
             const std::vector<std::string>& orders);
    ~Failures();
    Failures(const Failures&) = delete;
    Failures& operator=(const Failures&) = delete;

private:
    struct Order {
        std::string function;
        // The number of calls that still succeed.
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
