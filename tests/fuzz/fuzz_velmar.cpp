// What the Velmar protocol is fed with, as a script.

#include "fuzz/ProtocolPlayer.h"
#include "fuzz/ScriptMutator.h"
#include "protocols/velmar/VelmarProtocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Script script = parseScript(data, size);
    FuzzWorld world(endsOfVelmar());
    world.logger.SetLogLevelFor(size);
    VelmarProtocol protocol(&world.simState, &world.observer, &world.logger, &world.utilities,
                            &world.provider);
    // Its result is 0 however many packets it consumed.
    playProtocol(protocol, world, script, false);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    return ScriptMutator(&MessageMaker::Velmar).Mutate(data, size, maxSize, seed);
}
