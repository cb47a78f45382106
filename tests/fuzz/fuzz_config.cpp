// The configuration file, read by one start of the plugin and then by the next.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "fuzz/AllocationLimit.h"
#include "fuzz/FuzzWorld.h"
#include "fuzz/MessageMaker.h"
#include "support/TemporaryDirectory.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

constexpr std::array kNames = {"kyr/a",   "kyr/b", "sim/int",      "x#y",
                               "kyr/int", "\t",    "kyr/long/name"};
constexpr std::array kTypes = {"int",         "float",      "double", "int_array",
                               "float_array", "byte_array", "Int",    "int\r"};
constexpr std::array kSizes = {"1",  "8",          "256",         "0",   "-3",   "3.5",
                               "8x", "2147483647", "99999999999", "one", " +4 ", ""};

// The simulator's folder, the same for all inputs, and the working directory during one: outside,
// libFuzzer has names of its own that are relative to the directory it was started in.
class SimulatorFolder final {
public:
    explicit SimulatorFolder(const std::string& config) {
        std::filesystem::current_path(folder().Path());
        // An empty input is a first start, without a file.
        if (config.empty()) {
            std::filesystem::remove(kConfigFile);
        } else {
            folder().Write(kConfigFile, config);
        }
    }
    ~SimulatorFolder() { std::filesystem::current_path(home()); }
    SimulatorFolder(const SimulatorFolder&) = delete;
    SimulatorFolder& operator=(const SimulatorFolder&) = delete;

    static std::string Config() { return folder().Read(kConfigFile); }

private:
    static const std::filesystem::path& home() {
        static const std::filesystem::path path = std::filesystem::current_path();
        return path;
    }
    static const TemporaryDirectory& folder() {
        home();
        static const TemporaryDirectory directory;
        [[maybe_unused]] static const bool isMade = (directory.MakePluginsFolder(), true);
        return directory;
    }
};

// The plugin's own datarefs come after those of the file. A size that cannot be allocated is
// ignored and does not throw.
void start(DatarefProvider& provider) {
    provider.ParseConfig();
    provider.RegisterFloat("kyr/float");
    provider.RegisterInt("kyr/int");
    provider.RegisterIntArray(4, "kyr/ints");
    provider.RegisterFloatArray(4, "kyr/floats");
    provider.RegisterDouble("kyr/double");
    provider.RegisterByteArray(4, "kyr/bytes");
    provider.ProcessFlightLoop();
    provider.RegisterInt("kyr/after");
    provider.ProcessFlightLoop();
}

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

// Reads and writes every registered dataref, at and past its ends.
void touch(DatarefProvider& provider) {
    constexpr std::uintptr_t kMostRefcons = 40;
    for (std::uintptr_t number = 0; number < kMostRefcons; ++number) {
        auto* const refcon = reinterpret_cast<void*>(number);
        std::array<int, 8> ints{};
        std::array<float, 8> floats{};
        provider.SetInt(refcon, provider.GetInt(refcon) + 1);
        provider.SetFloat(refcon, provider.GetFloat(refcon) + 1.0F);
        provider.SetDouble(refcon, provider.GetDouble(refcon));
        const int size = provider.GetIntArray(refcon, nullptr, 0, 0) +
                         provider.GetFloatArray(refcon, nullptr, 0, 0);
        for (const int offset : {-1, 0, size - 1, size}) {
            provider.GetIntArray(refcon, ints.data(), offset, 8);
            provider.SetIntArray(refcon, ints.data(), offset, 8);
            provider.GetFloatArray(refcon, floats.data(), offset, 8);
            provider.SetFloatArray(refcon, floats.data(), offset, 8);
        }
        provider.SetBytes(refcon, ints.data(), 0, provider.GetBytes(refcon, ints.data(), 0, 8));
    }
}

template <class Table>
const char* oneOf(const Table& table, MessageMaker& maker) {
    return table[maker.Below(table.size())];
}

std::string makeLine(MessageMaker& maker) {
    std::string line =
        std::string(oneOf(kNames, maker)) + ' ' + oneOf(kTypes, maker) + ' ' + oneOf(kSizes, maker);
    return line + (maker.Below(4) == 0 ? " # comment\n" : "\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(data, data + size);
    const SimulatorFolder folder(content);
    {
        // Nothing here may end the process.
        FuzzWorld world({});
        world.logger.SetLogLevelFor(size);
        const AllocationLimit limit;
        start(world.provider);
        touch(world.provider);
    }
    const std::string extended = SimulatorFolder::Config();
    require(extended.starts_with(content), "the user's lines were changed");
    FuzzWorld world({});
    world.logger.SetLogLevelFor(size);
    const AllocationLimit limit;
    start(world.provider);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    MessageMaker maker(seed);
    if (maker.Below(2) == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::string content(data, data + size);
    const auto lineEnd = content.find('\n', maker.Below(size + 1));
    content.insert(lineEnd == std::string::npos ? 0 : lineEnd + 1, makeLine(maker));
    if (content.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::copy(content.begin(), content.end(), data);
    return content.size();
}
