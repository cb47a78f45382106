// The output stream of a Tarnel client: nanoseconds per value, against a bare loop that calls the
// same getters and stores the same bytes.

#include "XPLMDataAccess.h"
#include "bench/BenchWorld.h"
#include "bench/Figure.h"
#include "bench/PlainMemory.h"
#include "protocols/tarnel/TarnelProtocol.h"
#include "support/TarnelMessages.h"

namespace {

constexpr std::uint32_t kAircraftIdentifier = 0xFFFF;
constexpr std::uint32_t kFirstIdentifier = 100;

constexpr std::size_t kHeadSize = 8;
constexpr std::size_t kTrailerSize = 12;

// An exchange whose data message has no items.
class OutputStreamCase {
public:
    explicit OutputStreamCase(std::size_t answerSize)
        : request(dataMessage({})),
          memory(answerSize),
          protocol(&world.simState, &world.logger, &world.utilities, &world.provider,
                   &world.observer) {}

    void Ours() {
        world.Receive(request);
        protocol.Feed(&world.in, &world.out);
    }

protected:
    void define(const std::vector<OutputRecord>& outputs) {
        Bytes message = definitionsMessage({}, outputs);
        world.Receive(message);
        protocol.Feed(&world.in, &world.out);
    }

    void storeTrailer() {
        memory.Put(kAircraftIdentifier);
        memory.Put(std::uint32_t{4});
        memory.Put(world.simState.GetPlaneId());
    }

    template <typename FloorCase>
    void check(FloorCase& floorCase) {
        world.RequireSameCalls([&] { Ours(); }, [&] { floorCase.Floor(); });
        requireSameBytes(drain(world.out), memory.Content());
    }

    BenchWorld world;
    Bytes request;
    PlainMemory memory;

private:
    TarnelProtocol protocol;
};

class FloatOutputs final : public OutputStreamCase {
public:
    explicit FloatOutputs(std::int64_t count)
        : OutputStreamCase(static_cast<std::size_t>(count) * (kHeadSize + 4) + kTrailerSize) {
        std::vector<OutputRecord> records;
        for (const auto& name : world.DefineDatarefs("floats", xplmType_Float, count)) {
            const auto id = static_cast<std::uint32_t>(records.size()) + kFirstIdentifier;
            records.push_back({.id = id, .name = name, .type = RecordType::Float});
            outputs.push_back({id, XPLMFindDataRef(name.c_str())});
        }
        define(records);
    }

    void Check() { check(*this); }

    void Floor() {
        memory.Rewind();
        for (const Output& output : outputs) {
            memory.Put(output.identifier);
            memory.Put(std::uint32_t{4});
            memory.Put(XPLMGetDataf(output.dataref));
        }
        storeTrailer();
    }

private:
    struct Output {
        std::uint32_t identifier;
        XPLMDataRef dataref;
    };
    std::vector<Output> outputs;
};

// One output: an array whose number of elements is the count.
template <typename Element>
class ArrayOutput final : public OutputStreamCase {
public:
    using Getter = int (*)(XPLMDataRef, Element*, int, int);

    ArrayOutput(std::int64_t elements, XPLMDataTypeID type, std::int32_t recordType, Getter getter)
        : OutputStreamCase(kHeadSize + static_cast<std::size_t>(elements) * 4 + kTrailerSize),
          elements(static_cast<int>(elements)),
          getter(getter) {
        const std::string name = world.DefineDatarefs("array", type, 1, this->elements).front();
        dataref = XPLMFindDataRef(name.c_str());
        define(
            {{.id = kFirstIdentifier, .name = name, .type = recordType, .count = this->elements}});
    }

    void Check() { check(*this); }

    void Floor() {
        memory.Rewind();
        memory.Put(kFirstIdentifier);
        memory.Put(static_cast<std::uint32_t>(elements) * 4);
        getter(dataref, memory.Take<Element>(static_cast<std::size_t>(elements)), 0, elements);
        storeTrailer();
    }

private:
    int elements;
    Getter getter;
    XPLMDataRef dataref = nullptr;
};

} // namespace

void addFigures() {
    addFigure("OutputStream/float", {1, 10, 100, 1000, 10000},
              [](std::int64_t count) { return FloatOutputs(count); });
    addFigure("OutputStream/int_array", {10, 100, 1000, 10000}, [](std::int64_t count) {
        return ArrayOutput<int>(count, xplmType_IntArray, RecordType::IntArray, XPLMGetDatavi);
    });
    addFigure("OutputStream/float_array", {10, 100, 1000, 10000}, [](std::int64_t count) {
        return ArrayOutput<float>(count, xplmType_FloatArray, RecordType::FloatArray,
                                  XPLMGetDatavf);
    });
}
