#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "datarefs/IDatarefProvider.h"

// Records every call as text, in order, and returns what the test put into its fields. Calls
// `onCall` in every call.
class FakeDatarefProvider final : public IDatarefProvider {
public:
    ~FakeDatarefProvider() override {
        if (onDelete) {
            onDelete();
        }
    }

    XPLMDataRef RegisterInt(std::string name) override {
        record("RegisterInt " + name);
        return handle;
    }
    XPLMDataRef RegisterIntArray(std::size_t size, std::string name) override {
        record("RegisterIntArray " + std::to_string(size) + " " + name);
        return handle;
    }
    XPLMDataRef RegisterFloat(std::string name) override {
        record("RegisterFloat " + name);
        return handle;
    }
    XPLMDataRef RegisterFloatArray(std::size_t size, std::string name) override {
        record("RegisterFloatArray " + std::to_string(size) + " " + name);
        return handle;
    }
    XPLMDataRef RegisterDouble(std::string name) override {
        record("RegisterDouble " + name);
        return handle;
    }
    XPLMDataRef RegisterByteArray(std::size_t size, std::string name) override {
        record("RegisterByteArray " + std::to_string(size) + " " + name);
        return handle;
    }

    void ProcessFlightLoop() override { record("ProcessFlightLoop"); }
    void ParseConfig() override { record("ParseConfig"); }

    int GetInt(void* refcon) override {
        recordAccess("GetInt", refcon);
        return intResult;
    }
    void SetInt(void* refcon, int value) override {
        recordAccess("SetInt", refcon);
        lastInt = value;
    }
    void SetIntArray(void* refcon, int* values, int offset, int count) override {
        recordArrayAccess("SetIntArray", refcon, values, offset, count);
    }
    int GetIntArray(void* refcon, int* values, int offset, int max) override {
        recordArrayAccess("GetIntArray", refcon, values, offset, max);
        return intResult;
    }
    float GetFloat(void* refcon) override {
        recordAccess("GetFloat", refcon);
        return floatResult;
    }
    void SetFloat(void* refcon, float value) override {
        recordAccess("SetFloat", refcon);
        lastFloat = value;
    }
    void SetFloatArray(void* refcon, float* values, int offset, int count) override {
        recordArrayAccess("SetFloatArray", refcon, values, offset, count);
    }
    int GetFloatArray(void* refcon, float* values, int offset, int max) override {
        recordArrayAccess("GetFloatArray", refcon, values, offset, max);
        return intResult;
    }
    double GetDouble(void* refcon) override {
        recordAccess("GetDouble", refcon);
        return doubleResult;
    }
    void SetDouble(void* refcon, double value) override {
        recordAccess("SetDouble", refcon);
        lastDouble = value;
    }
    int GetBytes(void* refcon, void* values, int offset, int max) override {
        recordArrayAccess("GetBytes", refcon, values, offset, max);
        return intResult;
    }
    void SetBytes(void* refcon, void* values, int offset, int count) override {
        recordArrayAccess("SetBytes", refcon, values, offset, count);
    }

    void UnregisterAll() override { calls.emplace_back("UnregisterAll"); }

    // The result of every registration.
    XPLMDataRef handle = nullptr;
    int intResult = 0;
    float floatResult = 0.0F;
    double doubleResult = 0.0;

    std::function<void()> onCall;
    std::function<void()> onDelete;
    std::vector<std::string> calls;
    void* lastRefcon = nullptr;
    void* lastValues = nullptr;
    std::pair<int, int> lastOffsetAndCount;
    int lastInt = 0;
    float lastFloat = 0.0F;
    double lastDouble = 0.0;

private:
    void record(const std::string& call) {
        calls.push_back(call);
        if (onCall) {
            onCall();
        }
    }

    void recordAccess(const char* operation, void* refcon) {
        lastRefcon = refcon;
        record(operation);
    }

    void recordArrayAccess(const char* operation, void* refcon, void* values, int offset,
                           int count) {
        lastValues = values;
        lastOffsetAndCount = {offset, count};
        recordAccess(operation, refcon);
    }
};
