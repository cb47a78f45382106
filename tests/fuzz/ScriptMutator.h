#pragma once

#include <cstddef>
#include <cstdint>

#include "fuzz/MessageMaker.h"
#include "fuzz/Script.h"

// Makes one meaningful change to a script: adds a whole message, tears one in two with a flight
// loop between, changes bytes of one and corrects its sizes and counts, or moves, doubles or drops
// steps.
class ScriptMutator final {
public:
    // The messages that a script of this kind consists of.
    using MakeMessage = Bytes (MessageMaker::*)();

    explicit ScriptMutator(MakeMessage makeMessage) : makeMessage(makeMessage) {}

    // The contract of LLVMFuzzerCustomMutator.
    std::size_t Mutate(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                       unsigned int seed);

private:
    void change(Script& script, MessageMaker& maker);
    void addMessage(Script& script, MessageMaker& maker);
    void addStep(Script& script, MessageMaker& maker);
    void tear(Script& script, std::size_t at, MessageMaker& maker);
    void changeBytes(Bytes& bytes, MessageMaker& maker);

    MakeMessage makeMessage;
};
