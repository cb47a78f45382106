#include "headless/xplm/Simulator.h"

namespace headless {

namespace {

Simulator* current = nullptr;

} // namespace

Simulator::Simulator()
    : former(current),
      datarefs(recorder),
      access(datarefs, recorder),
      commands(recorder),
      flightLoops(clock, recorder),
      plugins(recorder),
      menu(recorder) {
    current = this;
}

Simulator::~Simulator() {
    current = former;
}

Simulator& Simulator::Current() {
    if (current == nullptr) {
        // Never destroyed: plugins may still call while the process ends.
        static auto* const processWide = new Simulator;
        current = processWide;
    }
    return *current;
}

void Simulator::DebugString(const char* text) {
    if (text == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMDebugString", "text");
        return;
    }
    recorder.Record("XPLMDebugString", nullptr, text);
    log.Write(text);
}

void Simulator::RunFrame(double seconds) {
    clock.Advance(seconds);
    commands.ContinueHeld();
    flightLoops.Run(seconds);
}

void Simulator::DropRegistrations() {
    flightLoops.Clear();
    commands.DropHandlers();
    datarefs.DropPluginDatarefs();
}

} // namespace headless
