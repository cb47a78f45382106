// Applying a data message: nanoseconds per item, against a bare loop of the same calls with
// ready values. Nothing is reported, as there are no outputs.

#include "XPLMDataAccess.h"
#include "bench/CommandItems.h"
#include "bench/DataMessageCase.h"
#include "bench/Figure.h"

namespace {

constexpr std::int32_t kUnscaled = 0;

std::int32_t rawValue(std::size_t item) {
    return static_cast<std::int32_t>(item * 997 % 65535 + 1);
}

// Items that set datarefs. After Check, `values` are those that the plugin sets.
template <typename Value>
class SetterCase : public DataMessageCase {
public:
    void Ours() { feed(request); }

protected:
    template <typename FloorCase>
    void check(FloorCase& floorCase) {
        Ours();
        values = floorCase.currentValues();
        floorCase.setAll(std::vector<Value>(values.size()));
        world.RequireSameCalls([&] { Ours(); }, [&] { floorCase.Floor(); });
        floorCase.setAll(std::vector<Value>(values.size()));
        floorCase.Floor();
        if (floorCase.currentValues() != values || values.back() == Value{}) {
            failCheck("the floor sets other values than the plugin");
        }
    }

    Bytes request;
    std::vector<Value> values;
};

class IntItems final : public SetterCase<int> {
public:
    explicit IntItems(std::int64_t count) {
        std::vector<InputRecord> records;
        for (const auto& name : world.DefineDatarefs("ints", xplmType_Int, count)) {
            records.push_back({.targetType = RecordType::Int, .target = name});
            datarefs.push_back(XPLMFindDataRef(name.c_str()));
        }
        define(records);
        request = messageOf(datarefs.size(), rawValue);
    }

    void Check() { check(*this); }
    void Floor() { setAll(values); }

    void setAll(const std::vector<int>& newValues) {
        for (std::size_t i = 0; i < datarefs.size(); ++i) {
            XPLMSetDatai(datarefs[i], newValues[i]);
        }
    }

    std::vector<int> currentValues() const {
        std::vector<int> current;
        for (const XPLMDataRef dataref : datarefs) {
            current.push_back(XPLMGetDatai(dataref));
        }
        return current;
    }

private:
    std::vector<XPLMDataRef> datarefs;
};

// Axes. With a range of two datarefs both are read for each item, as they may change.
class FloatItems final : public SetterCase<float> {
public:
    FloatItems(std::int64_t count, std::int32_t scaling)
        : readsRange(scaling == RecordScaling::DatarefRange) {
        const auto names = world.DefineDatarefs("floats", xplmType_Float, count);
        const auto minima = world.DefineDatarefs("minima", xplmType_Float, count);
        const auto maxima = world.DefineDatarefs("maxima", xplmType_Float, count);
        std::vector<InputRecord> records;
        for (std::size_t i = 0; i < names.size(); ++i) {
            world.simulator.Datarefs().SetFloat(minima[i], -1.0F);
            records.push_back({.intMinimum = -100,
                               .intMaximum = 100,
                               .targetType = RecordType::Float,
                               .scaling = scaling,
                               .rangeType = RecordType::Float,
                               .floatMinimum = -0.5F,
                               .floatMaximum = 0.5F,
                               .rangeMinimumName = minima[i],
                               .rangeMaximumName = maxima[i],
                               .target = names[i]});
            axes.push_back({XPLMFindDataRef(names[i].c_str()), XPLMFindDataRef(minima[i].c_str()),
                            XPLMFindDataRef(maxima[i].c_str())});
        }
        define(records);
        request = messageOf(names.size(), rawValue);
    }

    void Check() { check(*this); }

    void Floor() {
        if (!readsRange) {
            setAll(values);
            return;
        }
        for (std::size_t i = 0; i < axes.size(); ++i) {
            benchmark::DoNotOptimize(XPLMGetDataf(axes[i].minimum));
            benchmark::DoNotOptimize(XPLMGetDataf(axes[i].maximum));
            XPLMSetDataf(axes[i].target, values[i]);
        }
    }

    void setAll(const std::vector<float>& newValues) {
        for (std::size_t i = 0; i < axes.size(); ++i) {
            XPLMSetDataf(axes[i].target, newValues[i]);
        }
    }

    std::vector<float> currentValues() const {
        std::vector<float> current;
        for (const Axis& axis : axes) {
            current.push_back(XPLMGetDataf(axis.target));
        }
        return current;
    }

private:
    struct Axis {
        XPLMDataRef target;
        XPLMDataRef minimum;
        XPLMDataRef maximum;
    };
    bool readsRange;
    std::vector<Axis> axes;
};

// One item for each element of one array.
template <typename Element>
class ArrayElementItems final : public SetterCase<Element> {
public:
    using Getter = int (*)(XPLMDataRef, Element*, int, int);
    using Setter = void (*)(XPLMDataRef, Element*, int, int);

    ArrayElementItems(std::int64_t count, XPLMDataTypeID type, std::int32_t targetType,
                      Getter getter, Setter setter)
        : getter(getter), setter(setter), size(static_cast<int>(count)) {
        const auto name = this->world.DefineDatarefs("array", type, 1, size).front();
        dataref = XPLMFindDataRef(name.c_str());
        std::vector<InputRecord> records(static_cast<std::size_t>(size),
                                         {.targetType = targetType, .target = name});
        for (int i = 0; i < size; ++i) {
            records[static_cast<std::size_t>(i)].targetIndex = i;
        }
        this->define(records);
        this->request = this->messageOf(records.size(), rawValue);
    }

    void Check() { this->check(*this); }
    void Floor() { setAll(this->values); }

    void setAll(const std::vector<Element>& newValues) {
        for (int i = 0; i < size; ++i) {
            Element value = newValues[static_cast<std::size_t>(i)];
            setter(dataref, &value, i, 1);
        }
    }

    std::vector<Element> currentValues() const {
        std::vector<Element> current(static_cast<std::size_t>(size));
        getter(dataref, current.data(), 0, size);
        return current;
    }

private:
    Getter getter;
    Setter setter;
    int size;
    XPLMDataRef dataref = nullptr;
};

template <typename MakeCase>
void addFigureOf(const std::string& name, MakeCase makeCase) {
    addFigure("DataMessage/" + name, {1, 10, 100, 1000}, makeCase);
}

void addFloatFigure(const std::string& name, std::int32_t scaling) {
    addFigureOf(name, [=](std::int64_t count) { return FloatItems(count, scaling); });
}

} // namespace

void addFigures() {
    addFigureOf("int", [](std::int64_t count) { return IntItems(count); });
    addFloatFigure("float", kUnscaled);
    addFloatFigure("float_int_range", RecordScaling::IntRange);
    addFloatFigure("float_float_range", RecordScaling::FloatRange);
    addFloatFigure("float_dataref_range", RecordScaling::DatarefRange);
    addFigureOf("int_array_element", [](std::int64_t count) {
        return ArrayElementItems<int>(count, xplmType_IntArray, RecordType::IntArray, XPLMGetDatavi,
                                      XPLMSetDatavi);
    });
    addFigureOf("float_array_element", [](std::int64_t count) {
        return ArrayElementItems<float>(count, xplmType_FloatArray, RecordType::FloatArray,
                                        XPLMGetDatavf, XPLMSetDatavf);
    });
    addFigureOf("command_once", [](std::int64_t count) { return CommandOnceItems(count); });
    addFigureOf("command_hold", [](std::int64_t count) { return CommandHoldItems(count); });
}
