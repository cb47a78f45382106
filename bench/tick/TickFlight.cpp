#include "bench/tick/TickFlight.h"

#include <cstdio>

namespace {

headless::SessionOptions optionsFor(const std::string& plugin) {
    headless::SessionOptions options;
    options.plugins = {plugin};
    return options;
}

} // namespace

TickFlight::TickFlight(const std::string& plugin) : session(optionsFor(plugin)) {
    directory.MakePluginsFolder();
    headless::DatarefTable& datarefs = session.Simulator().Datarefs();
    for (int i = 0; i < kDatarefs; ++i) {
        datarefs.Define({.name = DatarefName(i), .types = xplmType_Float, .writable = true});
        datarefs.SetFloat(DatarefName(i), 0.25F * static_cast<float>(i));
    }
    session.StartPlugins();
}

std::string TickFlight::DatarefName(int index) {
    char name[32];
    std::snprintf(name, sizeof(name), "bench/tick/value_%04d", index);
    return name;
}
