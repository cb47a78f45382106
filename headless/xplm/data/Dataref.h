#pragma once

#include <memory>
#include <utility>

#include "headless/xplm/data/DatarefDefinition.h"
#include "headless/xplm/data/IDatarefValue.h"

namespace headless {

// One dataref; its address is the handle that plugins hold.
//
// When its plugin goes, the object stays as an orphan without a value: late uses of the handle are
// harmless, and registering the name again gives the same handle a value.
class Dataref final {
public:
    enum class Owner { Simulator, Plugin };

    Dataref(DatarefDefinition datarefDefinition, Owner datarefOwner, XPLMPluginID owningPlugin,
            std::unique_ptr<IDatarefValue> datarefValue)
        : definition(std::move(datarefDefinition)),
          owner(datarefOwner),
          plugin(owningPlugin),
          value(std::move(datarefValue)) {}

    const DatarefDefinition& Definition() const { return definition; }
    bool Offers(XPLMDataTypeID type) const { return (definition.types & type) != 0; }
    bool IsPluginOwned() const { return owner == Owner::Plugin; }
    // The plugin that registered it; the simulator for its own.
    XPLMPluginID Plugin() const { return plugin; }

    bool IsLive() const { return value != nullptr; }
    void Retire() { value.reset(); }

    // Only while live.
    IDatarefValue& Value() const { return *value; }

private:
    DatarefDefinition definition;
    Owner owner;
    XPLMPluginID plugin;
    std::unique_ptr<IDatarefValue> value;
};

} // namespace headless
