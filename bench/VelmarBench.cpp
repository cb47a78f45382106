// Velmar reads and writes, many in one request: nanoseconds per value, against a bare loop of the
// same calls that stores the same answer.

#include <numeric>

#include "XPLMDataAccess.h"
#include "bench/BenchWorld.h"
#include "bench/Figure.h"
#include "bench/PlainMemory.h"
#include "protocols/velmar/VelmarProtocol.h"
#include "support/VelmarMessages.h"

namespace {

constexpr std::uint32_t kRead = 5;
constexpr std::uint32_t kWrite = 6;
constexpr std::uint32_t kSuccess = 1;

constexpr std::size_t kHeadSize = 12;
constexpr std::size_t kLengthSize = 4;

// `count` datarefs of one type, each registered under its place in the list.
class VelmarCase {
public:
    void Ours() {
        world.Receive(request);
        protocol.Feed(&world.in, &world.out);
    }

protected:
    VelmarCase(std::int64_t count, XPLMDataTypeID type, std::uint32_t velmarType, int elements,
               std::size_t valueSize)
        : memory(static_cast<std::size_t>(count) * (kHeadSize + kLengthSize + valueSize)) {
        for (const auto& name : world.DefineDatarefs("floats", type, count, elements)) {
            const auto id = static_cast<std::uint32_t>(datarefs.size());
            append(registerDataref(id, velmarType, static_cast<std::uint32_t>(elements), name));
            datarefs.push_back(XPLMFindDataRef(name.c_str()));
        }
        Ours();
        request.clear();
    }

    void append(const Bytes& packet) {
        request.insert(request.end(), packet.begin(), packet.end());
    }

    void appendReads() {
        for (std::uint32_t id = 0; id < datarefs.size(); ++id) {
            append(readDataref(id));
        }
    }

    template <typename FloorCase>
    void check(FloorCase& floorCase) {
        world.RequireSameCalls([&] { Ours(); }, [&] { floorCase.Floor(); });
        requireSameBytes(drain(world.out), memory.Content());
    }

    // As `check`, and both wrote the same values.
    template <typename FloorCase>
    void checkWrite(FloorCase& floorCase) {
        Ours();
        const std::vector<float> ours = floorCase.currentValues();
        floorCase.clearValues();
        check(floorCase);
        floorCase.clearValues();
        floorCase.Floor();
        if (floorCase.currentValues() != ours || ours.back() == 0.0F) {
            failCheck("the floor writes other values than the plugin");
        }
    }

    void storeHead(std::uint32_t type, std::uint32_t id) {
        memory.Put(type);
        memory.Put(id);
        memory.Put(kSuccess);
    }

    BenchWorld world;
    Bytes request;
    std::vector<XPLMDataRef> datarefs;
    PlainMemory memory;

private:
    VelmarProtocol protocol{&world.simState, &world.observer, &world.logger, &world.utilities,
                            &world.provider};
};

class FloatReads final : public VelmarCase {
public:
    explicit FloatReads(std::int64_t count)
        : VelmarCase(count, xplmType_Float, VelmarValueType::Float, 0, 4) {
        appendReads();
    }

    void Check() { check(*this); }

    void Floor() {
        memory.Rewind();
        for (std::uint32_t id = 0; id < datarefs.size(); ++id) {
            storeHead(kRead, id);
            memory.Put(std::uint32_t{4});
            memory.Put(XPLMGetDataf(datarefs[id]));
        }
    }
};

class FloatWrites final : public VelmarCase {
public:
    explicit FloatWrites(std::int64_t count)
        : VelmarCase(count, xplmType_Float, VelmarValueType::Float, 0, 4), values(datarefs.size()) {
        std::iota(values.begin(), values.end(), 0.25F);
        for (std::uint32_t id = 0; id < datarefs.size(); ++id) {
            append(writeDataref(id, f32(values[id])));
        }
    }

    void Check() { checkWrite(*this); }

    void Floor() {
        memory.Rewind();
        for (std::uint32_t id = 0; id < datarefs.size(); ++id) {
            XPLMSetDataf(datarefs[id], values[id]);
            storeHead(kWrite, id);
        }
    }

    std::vector<float> currentValues() const {
        std::vector<float> current;
        for (const XPLMDataRef dataref : datarefs) {
            current.push_back(XPLMGetDataf(dataref));
        }
        return current;
    }

    void clearValues() {
        for (const XPLMDataRef dataref : datarefs) {
            XPLMSetDataf(dataref, 0.0F);
        }
    }

private:
    std::vector<float> values;
};

// One array of `elements` elements.
class ArrayRead final : public VelmarCase {
public:
    explicit ArrayRead(std::int64_t elements)
        : VelmarCase(1, xplmType_FloatArray, VelmarValueType::FloatArray,
                     static_cast<int>(elements), static_cast<std::size_t>(elements) * 4),
          size(static_cast<int>(elements)) {
        appendReads();
    }

    void Check() { check(*this); }

    void Floor() {
        memory.Rewind();
        storeHead(kRead, 0);
        memory.Put(static_cast<std::uint32_t>(size) * 4);
        XPLMGetDatavf(datarefs[0], memory.Take<float>(static_cast<std::size_t>(size)), 0, size);
    }

private:
    int size;
};

class ArrayWrite final : public VelmarCase {
public:
    explicit ArrayWrite(std::int64_t elements)
        : VelmarCase(1, xplmType_FloatArray, VelmarValueType::FloatArray,
                     static_cast<int>(elements), 0),
          values(static_cast<std::size_t>(elements)) {
        std::iota(values.begin(), values.end(), 0.25F);
        Bytes value;
        for (const float element : values) {
            const Bytes bytes = f32(element);
            value.insert(value.end(), bytes.begin(), bytes.end());
        }
        append(writeDataref(0, value));
    }

    void Check() { checkWrite(*this); }

    void Floor() {
        memory.Rewind();
        XPLMSetDatavf(datarefs[0], values.data(), 0, static_cast<int>(values.size()));
        storeHead(kWrite, 0);
    }

    std::vector<float> currentValues() const {
        std::vector<float> current(values.size());
        XPLMGetDatavf(datarefs[0], current.data(), 0, static_cast<int>(current.size()));
        return current;
    }

    void clearValues() {
        std::vector<float> zeros(values.size());
        XPLMSetDatavf(datarefs[0], zeros.data(), 0, static_cast<int>(zeros.size()));
    }

private:
    std::vector<float> values;
};

} // namespace

void addFigures() {
    addFigure("Velmar/read_float", {1, 10, 100, 1000},
              [](std::int64_t count) { return FloatReads(count); });
    addFigure("Velmar/write_float", {1, 10, 100, 1000},
              [](std::int64_t count) { return FloatWrites(count); });
    addFigure("Velmar/read_float_array", {10, 100, 1000, 10000},
              [](std::int64_t count) { return ArrayRead(count); });
    addFigure("Velmar/write_float_array", {10, 100, 1000, 10000},
              [](std::int64_t count) { return ArrayWrite(count); });
}
