// What the Tarnel protocol is fed with, as a script.

#include "fuzz/ProtocolPlayer.h"
#include "fuzz/ScriptMutator.h"
#include "protocols/tarnel/TarnelProtocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Script script = parseScript(data, size);
    FuzzWorld world(endsOfTarnel());
    world.logger.SetLogLevelFor(size);
    TarnelProtocol protocol(&world.simState, &world.logger, &world.utilities, &world.provider,
                            &world.observer);
    // Only definitions whose declared size wraps to 0 are read but not consumed; the buffer is put
    // back for them, too.
    playProtocol(protocol, world, script, true);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    return ScriptMutator(&MessageMaker::Tarnel).Mutate(data, size, maxSize, seed);
}
