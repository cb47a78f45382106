// What it costs the headless simulator to measure a plugin: a frame whose flight loop reads N
// datarefs, measured, against the same frame as it is without.

#include "XPLMDataAccess.h"
#include "XPLMProcessing.h"
#include "bench/BenchWorld.h"
#include "bench/Figure.h"
#include "headless/metering/Meter.h"

namespace {

constexpr double kFrameSeconds = 1.0 / 60;

class MeteredFrame final {
public:
    explicit MeteredFrame(std::int64_t count) {
        for (const std::string& name : world.DefineDatarefs("float", xplmType_Float, count)) {
            datarefs.push_back(XPLMFindDataRef(name.c_str()));
        }
        const XPLMPluginID plugin = world.simulator.Plugins().AddPlugin("bench.metering");
        const headless::PluginContext::Call call(world.simulator.Context(), plugin, "start");
        XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, this);
        world.simulator.Observe(nullptr);
    }
    MeteredFrame(const MeteredFrame&) = delete;
    MeteredFrame& operator=(const MeteredFrame&) = delete;

    void Ours() {
        world.simulator.Observe(&meter);
        Floor();
        world.simulator.Observe(nullptr);
    }
    void Floor() { world.simulator.RunFrame(kFrameSeconds); }

    void Check() {
        world.RequireSameCalls([this] { Ours(); }, [this] { Floor(); });
        if (meter.Plugins().at(0)->callsInFrames.Of("XPLMGetDataf") != datarefs.size()) {
            failCheck("the meter did not count the calls");
        }
    }

private:
    static float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/,
                              void* refcon) {
        const auto* const self = static_cast<MeteredFrame*>(refcon);
        for (const XPLMDataRef dataref : self->datarefs) {
            benchmark::DoNotOptimize(XPLMGetDataf(dataref));
        }
        return -1.0F;
    }

    BenchWorld world;
    headless::Meter meter{world.simulator};
    std::vector<XPLMDataRef> datarefs;
};

} // namespace

void addFigures() {
    addFigure("Metering/frame", {0, 1, 10, 100, 1000, 10'000},
              [](std::int64_t count) { return MeteredFrame(count); });
}
