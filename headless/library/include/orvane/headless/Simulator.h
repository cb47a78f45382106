#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/headless/Export.h"
#include "orvane/headless/Plugin.h"

namespace orvane::headless {

// What there is before any plugin. Empty file names mean none.
struct World {
    // Files as the simulator has them, DataRefs.txt and Commands.txt. What they name comes first,
    // then what is built in.
    std::string datarefsFile{};
    std::string commandsFile{};
    // The version of the simulator: 10, 11 or 12.
    int version = 12;
    // Elevation of the ground, in metres above mean sea level.
    double groundMetres = 0.0;
    double framesPerSecond = 60.0;
    // Whether the aircraft flies. If not, the simulator's datarefs keep what the test writes.
    bool aircraftFlies = false;
};

enum class Type { Int, Float, Double, IntArray, FloatArray, Bytes };

// How often each phase of a command was raised, by whomever.
struct CommandCounts {
    std::size_t begun = 0;
    std::size_t continued = 0;
    std::size_t ended = 0;
};

struct MenuItem {
    // The texts that lead to it: "Example > Reset".
    std::string path;
    bool enabled = true;
    bool checked = false;
};

// The headless simulator in the test's own process: a world, the plugins in it, and what they asked
// of it.
//
// Time is simulated: nothing moves and nothing waits but for runFrames() and runSeconds(). What
// plugins call (XPLMGetDataf ...) goes to the simulator that was made last and still exists. One
// thread; a test that makes several destroys them in the reverse order.
//
// The names of datarefs and commands must exist: std::out_of_range says which one does not.
class ORVANE_HEADLESS_API Simulator final {
public:
    // Throws std::runtime_error for a file that cannot be read.
    explicit Simulator(const World& world = {});
    // Disables, stops and unloads the plugins, the last one first.
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Loads a plugin's file, starts and enables it, and tells it that aircraft, airport and scenery
    // are there. Throws PluginError. The plugin stays until it is unloaded.
    Plugin& load(const std::string& file);
    // The same with a plugin that is linked to the program. Its static variables keep their values
    // from one start to the next.
    Plugin& start(const EntryPoints& entryPoints = EntryPoints::ofThisProgram());
    // Disables, stops and unloads; the object is gone after that. False when the file stays mapped
    // in the process, so that it would not be loaded afresh.
    bool unload(Plugin& plugin);

    // Frames of 1 / framesPerSecond seconds: flight loops run, held commands continue.
    void runFrames(int count = 1);
    // As many whole frames as fit, but one at least.
    void runSeconds(double seconds);
    double seconds() const;

    // A dataref of the simulator's. `elements` counts those of an array, or bytes. Throws
    // std::invalid_argument for a name that exists.
    void define(const std::string& dataref, Type type, int elements = 0, bool writable = true);
    bool hasDataref(std::string_view dataref) const;
    // Of any type of number; of several the most precise. The test is the simulator: it writes
    // read-only datarefs too. Throws std::invalid_argument for a dataref that is not a number.
    double number(std::string_view dataref) const;
    void setNumber(std::string_view dataref, double value);
    // All elements of an array; a write begins with the first one and may be shorter. Throws
    // std::invalid_argument for a dataref that is not an array.
    std::vector<double> numbers(std::string_view dataref) const;
    void setNumbers(std::string_view dataref, const std::vector<double>& values);
    // Bytes, up to the first zero; what a write leaves over becomes zeros. Throws
    // std::invalid_argument for a dataref that has no bytes.
    std::string text(std::string_view dataref) const;
    void setText(std::string_view dataref, const std::string& text);

    void defineCommand(const std::string& command, const std::string& description = {});
    bool hasCommand(std::string_view command) const;
    void once(std::string_view command);
    // Held until the end: each frame raises the continue phase.
    void begin(std::string_view command);
    void end(std::string_view command);
    CommandCounts counts(std::string_view command) const;

    // The items of the plugins' menu and of all menus below it, without separators.
    std::vector<MenuItem> menu() const;
    // Chooses one by its path. Throws std::invalid_argument when it does not exist or is disabled.
    void click(const std::string& path);

    // Another aircraft, known by its description (sim/aircraft/view/acf_descrip); plugins are told.
    void loadAircraft(const std::string& description);

    // What plugins wrote to the log, line by line, and what the simulator had to say about them.
    std::vector<std::string> log() const;
    // How often a function of the SDK was called; not from other threads. Throws
    // std::invalid_argument for a name that is none of the SDK's.
    std::size_t calls(std::string_view function) const;
    // What plugins did with datarefs, commands, messages and the log, in order and with arguments:
    // "XPLMSetDataf(sim/cockpit2/controls/yoke_pitch_ratio, 0.5)".
    std::vector<std::string> trace() const;
    // What the simulator refused, the last 64: "XPLMGetDataf: no such handle".
    std::vector<std::string> mistakes() const;
    // Forgets calls, trace and mistakes.
    void forget();

private:
    struct State;

    void adopt(std::unique_ptr<Plugin::State> plugin);

    std::unique_ptr<State> state;
};

} // namespace orvane::headless
