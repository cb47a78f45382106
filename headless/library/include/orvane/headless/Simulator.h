#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/headless/Export.h"
#include "orvane/headless/Plugin.h"

namespace orvane::headless {

// The world before any plugin is loaded. An empty file name means no file.
struct World {
    // Files in the simulator's format, DataRefs.txt and Commands.txt. Their entries come first,
    // then the built-in ones.
    std::string datarefsFile{};
    std::string commandsFile{};
    // The simulator's version: 10, 11 or 12.
    int version = 12;
    // Elevation of the ground, in metres above mean sea level.
    double groundMetres = 0.0;
    double framesPerSecond = 60.0;
    // Whether the aircraft flies. If not, the simulator's datarefs keep what the test writes.
    bool aircraftFlies = false;
};

enum class Type { Int, Float, Double, IntArray, FloatArray, Bytes };

// How often each phase of a command was raised, by the test, plugins or the simulator.
struct CommandCounts {
    std::size_t begun = 0;
    std::size_t continued = 0;
    std::size_t ended = 0;
};

struct MenuItem {
    // The texts of the menus and the item: "Example > Reset".
    std::string path;
    bool enabled = true;
    bool checked = false;
};

// The headless simulator in the test's own process: a world, the plugins in it, and a record of
// their calls.
//
// Time is simulated: it passes only in runFrames() and runSeconds(), and nothing waits. What
// plugins call (XPLMGetDataf ...) goes to the most recently created simulator that still exists.
// Use one thread; a test that creates several simulators destroys them in reverse order.
//
// The names of datarefs and commands must exist; otherwise std::out_of_range gives the name.
class ORVANE_HEADLESS_API Simulator final {
public:
    // Throws std::runtime_error if a file cannot be read.
    explicit Simulator(const World& world = {});
    // Disables, stops and unloads the plugins, the last one first.
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Loads a plugin's file, starts and enables it, and sends it the messages that the aircraft,
    // airport and scenery are loaded. Throws PluginError. The plugin stays until it is unloaded.
    Plugin& load(const std::string& file);
    // The same for a plugin that is linked into the program. Its static variables keep their values
    // from one start to the next.
    Plugin& start(const EntryPoints& entryPoints = EntryPoints::ofThisProgram());
    // Disables, stops and unloads the plugin, and destroys the object. Returns false if the file
    // stays mapped in the process, so loading it again would not start afresh.
    bool unload(Plugin& plugin);

    // Runs frames of 1 / framesPerSecond seconds: flight loops run, held commands continue.
    void runFrames(int count = 1);
    // Runs as many whole frames as fit, but at least one.
    void runSeconds(double seconds);
    double seconds() const;

    // Defines a dataref of the simulator. `elements` is the number of array elements or bytes.
    // Throws std::invalid_argument if the name exists already.
    void define(const std::string& dataref, Type type, int elements = 0, bool writable = true);
    bool hasDataref(std::string_view dataref) const;
    // Reads or writes any number type; if there are several, the most precise. The test acts as the
    // simulator, so it can also write read-only datarefs. Throws std::invalid_argument if the
    // dataref is not a number.
    double number(std::string_view dataref) const;
    void setNumber(std::string_view dataref, double value);
    // All elements of an array. A write starts at the first element and may be shorter. Throws
    // std::invalid_argument if the dataref is not an array.
    std::vector<double> numbers(std::string_view dataref) const;
    void setNumbers(std::string_view dataref, const std::vector<double>& values);
    // Bytes up to the first zero; a write fills the rest with zeros. Throws std::invalid_argument
    // if the dataref has no bytes.
    std::string text(std::string_view dataref) const;
    void setText(std::string_view dataref, const std::string& text);

    void defineCommand(const std::string& command, const std::string& description = {});
    bool hasCommand(std::string_view command) const;
    void once(std::string_view command);
    // The command is held until end(): each frame raises the continue phase.
    void begin(std::string_view command);
    void end(std::string_view command);
    CommandCounts counts(std::string_view command) const;

    // The items of the plugins menu and of all menus below it, without separators.
    std::vector<MenuItem> menu() const;
    // Chooses an item by its path. Throws std::invalid_argument if it does not exist or is
    // disabled.
    void click(const std::string& path);

    // Loads another aircraft with this description (sim/aircraft/view/acf_descrip) and sends
    // plugins the messages about it.
    void loadAircraft(const std::string& description);

    // The lines that plugins wrote to the log, and the simulator's lines about plugins.
    std::vector<std::string> log() const;
    // How often a function of the SDK was called, except from other threads. Throws
    // std::invalid_argument if the SDK has no such function.
    std::size_t calls(std::string_view function) const;
    // What plugins did with datarefs, commands, messages and the log, in order and with arguments:
    // "XPLMSetDataf(sim/cockpit2/controls/yoke_pitch_ratio, 0.5)".
    std::vector<std::string> trace() const;
    // The last 64 refusals of the simulator: "XPLMGetDataf: no such handle".
    std::vector<std::string> mistakes() const;
    // Clears calls, trace and mistakes.
    void forget();

private:
    struct State;

    void adopt(std::unique_ptr<Plugin::State> plugin);

    std::unique_ptr<State> state;
};

} // namespace orvane::headless
