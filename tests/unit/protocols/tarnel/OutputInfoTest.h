#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/tarnel/OutputInfo.h"
#include "support/Bytes.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeDatarefProvider.h"
#include "support/FakeProtocol.h"
#include "support/RecordingLogger.h"
#include "support/TarnelMessages.h"

// Outputs of a simulator with a dataref of each type.
class OutputInfoTest : public testing::Test {
protected:
    OutputInfoTest() {
        define("sim/int", xplmType_Int);
        define("sim/float", xplmType_Float);
        define("sim/ints", xplmType_IntArray, 6);
        define("sim/floats", xplmType_FloatArray, 6);
        define("sim/several", xplmType_Int | xplmType_Float | xplmType_Double);
        simulator.Datarefs().SetInt("sim/int", -2);
        simulator.Datarefs().SetFloat("sim/float", 0.1F);
        simulator.Datarefs().SetIntArray("sim/ints", {1, 2, 3, 4, 5, 6});
        simulator.Datarefs().SetFloatArray("sim/floats", {1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F});
        simulator.Recorder().Enable();
    }

    void define(const std::string& name, XPLMDataTypeID types, int elements = 0) {
        simulator.Datarefs().Define({.name = name, .types = types, .elements = elements});
    }

    std::unique_ptr<OutputInfo> make(const OutputRecord& fields) { return make(fields, provider); }

    std::unique_ptr<OutputInfo> make(const OutputRecord& fields, IDatarefProvider& from) {
        const Bytes bytes = toBytes(fields);
        OutputDefinitionStruct record{};
        std::memcpy(&record, bytes.data(), bytes.size());
        return std::make_unique<OutputInfo>(&protocol, record, &from, &observer);
    }

    std::string data(OutputInfo& output) {
        output.GetData(&out);
        return toHex(drain(out));
    }
    std::string data(const OutputRecord& fields) { return data(*make(fields)); }

    std::string dummy(OutputInfo& output) {
        output.GetDummyData(&out);
        return toHex(drain(out));
    }
    std::string dummy(const OutputRecord& fields) { return dummy(*make(fields)); }

    std::vector<std::string> found() {
        std::vector<std::string> names;
        for (const auto& call : simulator.Recorder().CallsOf("XPLMFindDataRef")) {
            names.push_back(call.arguments);
        }
        return names;
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    RingBuffer out{10'000, &logger};
    FakeProtocol protocol;
    FakeDatarefProvider provider;
    FakeCommandObserver observer;
};
