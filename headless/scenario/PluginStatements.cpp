#include <bit>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "headless/scenario/Statements.h"

namespace headless {

namespace {

Statement toPlugin(Arguments& arguments, void (PluginHost::*step)()) {
    const std::string name = arguments.RestOrNothing();
    return acting(arguments,
                  [name, step](Flight& flight) { (flight.Session().Plugin(name).*step)(); });
}

} // namespace

Statement readAircraft(Arguments& arguments) {
    const std::string what = arguments.Word("load or unload");
    if (what == "load") {
        const std::string description = arguments.RestOrNothing();
        return acting(arguments, [description](Flight& flight) {
            flight.Session().LoadAircraft(description);
        });
    }
    if (what == "unload") {
        return acting(arguments, [](Flight& flight) { flight.Session().UnloadAircraft(); });
    }
    throw std::invalid_argument("an aircraft is loaded or unloaded, not \"" + what + "\"");
}

Statement readMessage(Arguments& arguments) {
    const int number = arguments.TakeNumber<int>("the message's number");
    // The simulator passes small numbers, such as an aircraft's index, as the pointer itself.
    const auto parameter =
        std::bit_cast<void*>(arguments.TakeNumber<std::intptr_t>("the message's parameter"));
    return acting(arguments, [number, parameter](Flight& flight) {
        flight.Session().Simulator().Plugins().Broadcast(number, parameter);
    });
}

Statement readPlugins(Arguments& arguments) {
    return reporting(arguments, [](Flight& flight) {
        return "plugins " + flight.Session().Plugins().Describe();
    });
}

Statement readReload(Arguments& arguments) {
    const std::string name = arguments.RestOrNothing();
    return acting(arguments, [name](Flight& flight) { flight.Session().ReloadPlugin(name); });
}

Statement readDisable(Arguments& arguments) {
    return toPlugin(arguments, &PluginHost::Disable);
}

Statement readEnable(Arguments& arguments) {
    return toPlugin(arguments, &PluginHost::Enable);
}

Statement readStop(Arguments& arguments) {
    return toPlugin(arguments, &PluginHost::Stop);
}

Statement readStart(Arguments& arguments) {
    const std::string name = arguments.RestOrNothing();
    return acting(arguments, [name](Flight& flight) {
        PluginHost& plugin = flight.Session().Plugin(name);
        plugin.Start();
        plugin.Enable();
    });
}

} // namespace headless
