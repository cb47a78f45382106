#pragma once

#include "headless/xplm/data/DatarefDefinition.h"
#include "headless/xplm/data/IDatarefValue.h"

#include <memory>
#include <utility>

namespace headless {

// One dataref; its address is the handle that plugins hold.
//
// When a plugin takes its dataref back the object stays, without a value, so that late uses of the
// handle are harmless and can be told from others.
class Dataref final {
public:
    enum class Owner { Simulator, Plugin };

    Dataref(DatarefDefinition datarefDefinition, Owner datarefOwner,
            std::unique_ptr<IDatarefValue> datarefValue)
        : definition(std::move(datarefDefinition)),
          owner(datarefOwner),
          value(std::move(datarefValue)) {}

    const DatarefDefinition& Definition() const { return definition; }
    bool Offers(XPLMDataTypeID type) const { return (definition.types & type) != 0; }
    bool IsPluginOwned() const { return owner == Owner::Plugin; }

    bool IsLive() const { return value != nullptr; }
    void Retire() { value.reset(); }

    // Only while live.
    IDatarefValue& Value() const { return *value; }

private:
    DatarefDefinition definition;
    Owner owner;
    std::unique_ptr<IDatarefValue> value;
};

} // namespace headless
