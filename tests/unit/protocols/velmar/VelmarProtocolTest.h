#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/velmar/VelmarProtocol.h"
#include "support/Bytes.h"
#include "support/FakeCommandObserver.h"
#include "support/RecordingLogger.h"
#include "support/TextOf.h"

// One client's protocol with its own simulator, and common packets.
class VelmarProtocolTest : public testing::Test {
protected:
    static Bytes text(std::string_view characters) { return name(characters, characters.size()); }

    static Bytes datarefPacket(std::uint32_t id, std::uint32_t type, std::uint32_t size,
                               std::string_view datarefName) {
        return join({u32(1),
                     u32(id),
                     u32(type),
                     u32(size),
                     {static_cast<unsigned char>(datarefName.size())},
                     text(datarefName)});
    }

    static Bytes commandPacket(std::uint32_t id, std::string_view commandName) {
        return join(
            {u32(3), u32(id), {static_cast<unsigned char>(commandName.size())}, text(commandName)});
    }

    // Everything that one Feed answers, in hex.
    std::string ask(const Bytes& packets) {
        fill(in, packets);
        EXPECT_EQ(protocol->Feed(&in, &out), 0);
        return toHex(drain(out));
    }
    std::string ask(const char* hex) { return ask(fromHex(hex)); }

    // The line with which one Feed ends the process; empty if it does not.
    std::string fatalLineOf(const Bytes& packets) {
        fill(in, packets);
        return textOf<FatalReport>([&] { protocol->Feed(&in, &out); });
    }

    void define(const char* datarefName, XPLMDataTypeID types, int elements = 0) {
        simulator.Datarefs().Define({.name = datarefName, .types = types, .elements = elements});
    }

    // Defines an int dataref and registers it.
    void registerInt(std::uint32_t id, const char* datarefName) {
        define(datarefName, xplmType_Int);
        ask(datarefPacket(id, 1, 0, datarefName));
    }

    // Defines a command and registers it.
    void registerCommand(std::uint32_t id, const char* commandName) {
        simulator.Commands().Define(commandName, "");
        ask(commandPacket(id, commandName));
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    FakeCommandObserver observer;
    RingBuffer in{1024, &logger};
    RingBuffer out{1024, &logger};
    // The protocol does not use the other services.
    std::unique_ptr<VelmarProtocol> protocol =
        std::make_unique<VelmarProtocol>(nullptr, &observer, &logger, nullptr, nullptr);
};
