#include "steady/SteadyWorld.h"

#include "network/IProtocol.h"

namespace {

constexpr int kBufferSize = 0x1000000;

} // namespace

std::string numbered(const char* prefix, int number) {
    return prefix + std::to_string(10'000 + number);
}

SteadyWorld::SteadyWorld(int datarefsOfEachType)
    : in(kBufferSize, &logger), out(kBufferSize, &logger) {
    headless::DatarefTable& datarefs = simulator.Datarefs();
    for (int i = 0; i < datarefsOfEachType; ++i) {
        datarefs.Define({.name = numbered("sim/int/", i), .types = xplmType_Int});
        datarefs.Define({.name = numbered("sim/float/", i), .types = xplmType_Float});
        datarefs.Define(
            {.name = numbered("sim/ints/", i), .types = xplmType_IntArray, .elements = kElements});
        datarefs.Define({.name = numbered("sim/floats/", i),
                         .types = xplmType_FloatArray,
                         .elements = kElements});
    }
    simState.SetPlaneLoaded(true);
}

unsigned long SteadyWorld::Exchange(IProtocol& protocol, Bytes& request) {
    in.ResetBuffer();
    in.WriteByteArray(request.data(), request.size());
    protocol.Feed(&in, &out);
    const unsigned long answered = out.GetNumReadBytesAvailable();
    out.ResetBuffer();
    return answered;
}
