#include "tools/orvane/drive/ProfileInputTable.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>

#include <fmt/core.h>

#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/drive/ProfileMotionTable.h"

namespace orvane::tool {

namespace {

using tarnel::ConditionDataref;
using tarnel::Input;

constexpr std::int64_t kMaxInt32 = std::numeric_limits<std::int32_t>::max();

std::optional<std::int32_t> readElement(ProfileTable& table) {
    const auto element = table.Integer("element", 0, kMaxInt32);
    return element ? std::optional(static_cast<std::int32_t>(*element)) : std::nullopt;
}

// What an input writes to. If that is invalid, a stand-in lets the rest be checked.
struct Target {
    Input input;
    bool isFloat = false;
    bool isValid = false;
    std::vector<ExpectedName> names{};
    std::optional<std::int32_t> element{};
    // How values are mapped, as a person would say it.
    std::string range{};
    std::string scaling{};
    std::string kind{};
    std::string condition{};
};

// Names differ at their ends.
std::string lastPart(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

// "-1..1, float range": scaling implies a float.
std::string mappingOf(const Target& target) {
    std::string mapping = target.range;
    for (const std::string& part : {target.scaling, target.kind}) {
        const bool isSaid = part.empty() || (part == "float" && !target.scaling.empty());
        mapping += isSaid ? "" : (mapping.empty() ? "" : ", ") + part;
    }
    return mapping + target.condition;
}

Input datarefInput(tarnel::ActionId action, const std::string& name, bool isFloat,
                   std::optional<std::int32_t> element) {
    if (isFloat) {
        return element ? Input::toFloatElement(action, name, *element)
                       : Input::toFloat(action, name);
    }
    return element ? Input::toIntElement(action, name, *element) : Input::toInt(action, name);
}

Target readDatarefTarget(ProfileTable& table, tarnel::ActionId action) {
    const auto name = table.String("dataref");
    const auto type = readType(table);
    const auto element = readElement(table);
    Target target{Input::toFloat(action, "unknown"), type != "int"};
    target.element = element;
    target.range = target.isFloat ? "0..1" : "unscaled";
    target.kind =
        fmt::format("{}{}{}", isOwnName(name.value_or("")) ? "own " : "",
                    target.isFloat ? "float" : "int", element ? fmt::format("[{}]", *element) : "");
    if (name && type) {
        table.Try("dataref", [&] {
            target.input = datarefInput(action, *name, target.isFloat, element);
            target.isValid = true;
            target.names.push_back({*name});
        });
    }
    return target;
}

Target readCommandTarget(ProfileTable& table, tarnel::ActionId action) {
    table.Refuse({"type", "element", "scaling"}, "is for datarefs");
    const auto name = table.String("command");
    Target target{Input::toCommand(action, "unknown")};
    target.kind = isOwnName(name.value_or("")) ? "own command" : "command";
    if (name) {
        table.Try("command", [&] {
            target.input = Input::toCommand(action, *name);
            target.isValid = true;
            target.names.push_back({*name, true});
        });
    }
    return target;
}

void scaleByDatarefs(ProfileTable& scaling, Target& target) {
    const auto names = scaling.StringPair("datarefs");
    const auto element = readElement(scaling);
    if (!names) {
        return;
    }
    scaling.Try("datarefs", [&] {
        if (element) {
            target.input.scaledByDatarefElements(names->first, names->second, *element);
        } else {
            target.input.scaledByDatarefs(names->first, names->second);
        }
        target.names.push_back({names->first});
        target.names.push_back({names->second});
        target.range = fmt::format("{}{}..{}", names->first == names->second ? "-" : "",
                                   lastPart(names->first), lastPart(names->second));
        target.scaling = "dataref range";
    });
}

void readScaling(ProfileTable& table, Target& target, bool isFixed) {
    if (isFixed) {
        table.Refuse({"scaling"}, "has no effect on a fixed value");
        return;
    }
    if (!target.isFloat) {
        table.Refuse({"scaling"}, "is for floats");
        return;
    }
    Input& input = target.input;
    std::optional<ProfileTable> scaling = table.Table("scaling");
    if (!scaling) {
        return;
    }
    const std::string_view kind = scaling->OneOf({"float_range", "int_range", "datarefs"});
    if (kind == "datarefs") {
        scaleByDatarefs(*scaling, target);
    } else if (kind == "float_range") {
        if (const auto range = scaling->FloatPair(kind)) {
            scaling->Try(kind, [&] { input.scaledByFloatRange(range->first, range->second); });
            target.range = fmt::format("{}..{}", range->first, range->second);
            target.scaling = "float range";
        }
    } else if (kind == "int_range") {
        if (const auto range = scaling->Int32Pair(kind)) {
            scaling->Try(kind, [&] { input.scaledByIntRange(range->first, range->second); });
            target.range = fmt::format("{}..{}", range->first, range->second);
            target.scaling = "int range";
        }
    }
    scaling->RefuseUnknown();
}

void readCondition(ProfileTable& skip, std::string_view condition, Target& target) {
    const auto name = skip.String(condition);
    const auto type = readType(skip);
    const auto element = readElement(skip);
    if (!name || !type) {
        return;
    }
    using Type = ConditionDataref::Type;
    const Type whole = *type == "float" ? Type::Float : Type::Int;
    const Type inArray = *type == "float" ? Type::FloatElement : Type::IntElement;
    const ConditionDataref dataref{*name, element ? inArray : whole, element.value_or(0)};
    skip.Try(condition, [&] {
        if (condition == "while_positive") {
            target.input.skippedWhilePositive(dataref);
        } else {
            target.input.skippedWhileZero(dataref);
        }
        target.names.push_back({*name});
    });
    target.condition = fmt::format(", not while {} {}", lastPart(*name),
                                   condition == "while_positive" ? "> 0" : "is 0");
}

void readSkip(ProfileTable& table, Target& target) {
    std::optional<ProfileTable> skip = table.Table("skip");
    if (!skip) {
        return;
    }
    std::optional<std::int64_t> value;
    const std::string_view condition = skip->OneOf({"when_value", "while_positive", "while_zero"});
    if (condition == "when_value") {
        value = skip->Integer(condition, 0, 1);
    } else if (!condition.empty()) {
        readCondition(*skip, condition, target);
    }
    skip->RefuseUnknown();
    if (value) {
        target.condition = fmt::format(", skips {}", *value);
    }
    if (value == 1) {
        target.input.skippedWhenOne();
    } else if (value == 0) {
        target.input.skippedWhenZero();
    }
}

void readFixed(ProfileTable& table, Target& target) {
    if (target.isFloat) {
        if (const auto value = table.Float("fixed")) {
            table.Try("fixed", [&] { target.input.fixed(*value); });
            target.range = fmt::format("always {}", *value);
        }
    } else if (const auto value = table.Int32("fixed")) {
        table.Try("fixed", [&] { target.input.fixed(*value); });
        target.range = fmt::format("always {}", *value);
    }
}

// True when it is held.
bool readTiming(ProfileTable& table, Target& target) {
    const bool isHeld = table.Flag("hold");
    if (isHeld) {
        table.Refuse({"repeat_ms"}, "is for commands that are not held");
        table.Refuse({"fixed"}, "would leave a held command down, or never press it");
        table.Try("hold", [&] { target.input.held(); });
        target.kind += ", held";
        return true;
    }
    if (const auto interval = table.Integer("repeat_ms", 1, kMaxInt32)) {
        table.Try("repeat_ms",
                  [&] { target.input.repeatedEvery(std::chrono::milliseconds(*interval)); });
        target.kind += fmt::format(", at most every {} ms", *interval);
    }
    return false;
}

} // namespace

std::optional<ProfileRecord> readProfileInput(ProfileTable table, tarnel::ActionId action) {
    const bool isCommand = isOnCommand(table);
    Target target = isCommand ? readCommandTarget(table, action) : readDatarefTarget(table, action);
    const bool isFixed = table.Has("fixed");
    bool isHeld = false;
    if (isCommand) {
        isHeld = readTiming(table, target);
    } else {
        table.Refuse({"hold", "repeat_ms"}, "is for commands");
        readScaling(table, target, isFixed);
    }
    readSkip(table, target);
    readFixed(table, target);
    const bool isAxis = target.isFloat && !isFixed;
    const std::optional<Motion> motion = readProfileMotion(table, isAxis);
    table.RefuseUnknown();
    if (!target.isValid) {
        return std::nullopt;
    }
    return ProfileRecord{target.input,      isAxis,        isHeld, motion, target.names,
                         mappingOf(target), target.element};
}

} // namespace orvane::tool
