// A client's definitions, which are handled once and in one frame: the whole time, and beside it
// the time of the simulator or the file system.

#include <fcntl.h>
#include <unistd.h>

#include "XPLMDataAccess.h"
#include "bench/BenchWorld.h"
#include "bench/Figure.h"
#include "protocols/tarnel/TarnelProtocol.h"
#include "support/TarnelMessages.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

class DefinitionsCase {
public:
    // The first bytes of a new connection, whose buffers were never touched.
    void Ours() {
        world.Receive(request);
        protocol.Feed(&world.in, &world.out);
    }

protected:
    BenchWorld world;
    Bytes request;

private:
    TarnelProtocol protocol{&world.simState, &world.logger, &world.utilities, &world.provider,
                            &world.observer};
};

// The count is of inputs, and as many outputs. The floor is the simulator's look-ups alone.
class InputsAndOutputs final : public DefinitionsCase {
public:
    explicit InputsAndOutputs(std::int64_t count) {
        std::vector<InputRecord> inputs;
        std::vector<OutputRecord> outputs;
        for (const auto& name : world.DefineDatarefs("inputs", xplmType_Float, count)) {
            const auto action = static_cast<std::int32_t>(inputs.size()) + 1;
            inputs.push_back({.action = action, .targetType = RecordType::Float, .target = name});
            names.push_back(name);
        }
        for (const auto& name : world.DefineDatarefs("outputs", xplmType_Float, count)) {
            const auto id = static_cast<std::uint32_t>(outputs.size()) + 1;
            outputs.push_back({.id = id, .name = name, .type = RecordType::Float});
            names.push_back(name);
        }
        request = definitionsMessage(inputs, outputs);
    }

    // Without an aircraft the answer needs no call to the simulator: only look-ups remain.
    void Check() {
        world.simState.SetPlaneLoaded(false);
        world.RequireSameCalls([&] { Ours(); }, [&] { Floor(); });
    }

    void Floor() {
        for (const std::string& name : names) {
            benchmark::DoNotOptimize(XPLMFindDataRef(name.c_str()));
        }
    }

private:
    std::vector<std::string> names;
};

// Outputs that become the plugin's own datarefs and are added to the configuration file. The floor
// makes the same writes to the file.
class NewOwnOutputs final : public DefinitionsCase {
public:
    explicit NewOwnOutputs(std::int64_t count) {
        directory.MakePluginsFolder();
        std::vector<OutputRecord> outputs;
        for (std::int64_t i = 0; i < count; ++i) {
            const std::string name = "kyr/bench/output_" + std::to_string(1000 + i);
            outputs.push_back(
                {.id = static_cast<std::uint32_t>(i), .name = name, .type = RecordType::Float});
            lines.push_back(name + " float");
        }
        request = definitionsMessage({}, outputs);
    }

    void Check() {
        Ours();
        const std::string ours = directory.Read(kConfigFile);
        std::filesystem::remove(kConfigFile);
        Floor();
        if (directory.Read(kConfigFile) != ours) {
            failCheck("the floor writes another configuration file than the plugin");
        }
    }

    void Floor() {
        for (const std::string& line : lines) {
            const int file = ::open(kConfigFile, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
            if (::write(file, "\n", 1) != 1 ||
                ::write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
                failCheck("the configuration file cannot be written");
            }
            ::close(file);
        }
    }

private:
    TemporaryDirectory directory;
    std::vector<std::string> lines;
};

} // namespace

void addFigures() {
    addOnceFigure("Definitions/inputs_and_outputs", {1, 10, 100, 1000, 10000},
                  [](std::int64_t count) { return InputsAndOutputs(count); });
    addOnceFigure("Definitions/new_own_outputs", {1, 10, 50, 100, 200},
                  [](std::int64_t count) { return NewOwnOutputs(count); });
}
