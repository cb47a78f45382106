#pragma once

#include <climits>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "datarefs/DatarefProvider.h"
#include "headless/xplm/Simulator.h"
#include "support/RecordingLogger.h"
#include "support/TemporaryDirectory.h"

// A provider in a simulator of its own, in an empty directory with the simulator's plugins folder.
// The accessors forward to the provider, as the plugin's do, and note who was called.
class DatarefProviderFixture : public testing::Test {
protected:
    static constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

    DatarefProviderFixture() {
        directory.MakePluginsFolder();
        simulator.Recorder().Enable();
        start();
    }
    ~DatarefProviderFixture() override { current = nullptr; }

    void start() {
        provider = std::make_unique<DatarefProvider>(
            &logger, readInt, writeInt, readFloat, writeFloat, readDouble, writeDouble, readInts,
            writeInts, readFloats, writeFloats, readBytes, writeBytes);
        current = provider.get();
    }

    // The simulator ends and is started again in the same folder.
    void restart() {
        simulator.DropRegistrations();
        simulator.Recorder().Clear();
        start();
    }

    // The registrations that the simulator was asked for: "name, type, writable".
    std::vector<std::string> registrations() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().CallsOf("XPLMRegisterDataAccessor")) {
            found.push_back(call.arguments);
        }
        return found;
    }

    // The whole array of this refcon.
    std::vector<int> intArray(std::uintptr_t number) {
        std::vector<int> values(
            static_cast<std::size_t>(provider->GetIntArray(refcon(number), nullptr, 0, 0)), -7);
        provider->GetIntArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }
    std::vector<float> floatArray(std::uintptr_t number) {
        std::vector<float> values(
            static_cast<std::size_t>(provider->GetFloatArray(refcon(number), nullptr, 0, 0)),
            -7.0F);
        provider->GetFloatArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }

    static void* refcon(std::uintptr_t number) { return reinterpret_cast<void*>(number); }

    TemporaryDirectory directory;
    headless::Simulator simulator;
    RecordingLogger logger;
    std::unique_ptr<DatarefProvider> provider;
    // "accessor refcon", in the order of the calls.
    inline static std::vector<std::string> accessed;

private:
    static void note(const char* accessor, void* refcon) {
        accessed.push_back(std::string(accessor) + " " +
                           std::to_string(reinterpret_cast<std::uintptr_t>(refcon)));
    }

    static int readInt(void* refcon) {
        note("readInt", refcon);
        return current->GetInt(refcon);
    }
    static void writeInt(void* refcon, int value) {
        note("writeInt", refcon);
        current->SetInt(refcon, value);
    }
    static float readFloat(void* refcon) {
        note("readFloat", refcon);
        return current->GetFloat(refcon);
    }
    static void writeFloat(void* refcon, float value) {
        note("writeFloat", refcon);
        current->SetFloat(refcon, value);
    }
    static double readDouble(void* refcon) {
        note("readDouble", refcon);
        return current->GetDouble(refcon);
    }
    static void writeDouble(void* refcon, double value) {
        note("writeDouble", refcon);
        current->SetDouble(refcon, value);
    }
    static int readInts(void* refcon, int* values, int offset, int max) {
        note("readInts", refcon);
        return current->GetIntArray(refcon, values, offset, max);
    }
    static void writeInts(void* refcon, int* values, int offset, int count) {
        note("writeInts", refcon);
        current->SetIntArray(refcon, values, offset, count);
    }
    static int readFloats(void* refcon, float* values, int offset, int max) {
        note("readFloats", refcon);
        return current->GetFloatArray(refcon, values, offset, max);
    }
    static void writeFloats(void* refcon, float* values, int offset, int count) {
        note("writeFloats", refcon);
        current->SetFloatArray(refcon, values, offset, count);
    }
    static int readBytes(void* refcon, void* values, int offset, int max) {
        note("readBytes", refcon);
        return current->GetBytes(refcon, values, offset, max);
    }
    static void writeBytes(void* refcon, void* values, int offset, int count) {
        note("writeBytes", refcon);
        current->SetBytes(refcon, values, offset, count);
    }

    inline static DatarefProvider* current = nullptr;
};
