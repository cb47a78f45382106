#pragma once

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The objects of one kind that plugins made, oldest first. An object's address is its handle. It
// belongs to the plugin that made it and is removed with it.
template <class Object>
class OwnedObjects final {
public:
    // `kindOfObject` names it in refusals.
    OwnedObjects(PluginContext& pluginContext, CallRecorder& callRecorder, const char* kindOfObject)
        : context(pluginContext), recorder(callRecorder), kind(kindOfObject) {}
    OwnedObjects(const OwnedObjects&) = delete;
    OwnedObjects& operator=(const OwnedObjects&) = delete;

    Object* Add(Object object) {
        objects.push_back(std::make_unique<Object>(std::move(object)));
        Object* const added = objects.back().get();
        owners[added] = context.Plugin();
        return added;
    }

    // Null for null and for anything but the handle of a living object; records the refusal.
    Object* Resolve(const void* handle) {
        if (handle == nullptr) {
            recorder.Refuse(Refusal::NullHandle, kind);
            return nullptr;
        }
        Object* const found = Find(handle);
        if (found == nullptr) {
            recorder.Refuse(Refusal::UnknownHandle, kind);
        }
        return found;
    }

    // The same without recording a refusal.
    Object* Find(const void* handle) const {
        const auto found = owners.find(handle);
        return found == owners.end() ? nullptr
                                     : const_cast<Object*>(static_cast<const Object*>(handle));
    }

    XPLMPluginID OwnerOf(const Object& object) const { return owners.at(&object); }
    bool IsActive(const Object& object) const { return context.IsActive(OwnerOf(object)); }

    // False if there is no such object; records the refusal.
    bool Remove(const void* handle) {
        if (Resolve(handle) == nullptr) {
            return false;
        }
        erase(handle);
        return true;
    }

    // Returns how many it had.
    std::size_t DropOf(XPLMPluginID plugin) {
        const std::size_t before = Size();
        for (const Object* object : All()) {
            if (OwnerOf(*object) == plugin) {
                erase(object);
            }
        }
        return before - Size();
    }

    std::size_t Size() const { return objects.size(); }
    // A copy: objects may come and go meanwhile; do not use those that are gone.
    std::vector<Object*> All() const {
        std::vector<Object*> all;
        all.reserve(objects.size());
        for (const auto& object : objects) {
            all.push_back(object.get());
        }
        return all;
    }

private:
    void erase(const void* handle) {
        owners.erase(handle);
        std::erase_if(objects, [&](const auto& object) { return object.get() == handle; });
    }

    PluginContext& context;
    CallRecorder& recorder;
    const char* kind;
    std::vector<std::unique_ptr<Object>> objects;
    std::unordered_map<const void*, XPLMPluginID> owners;
};

} // namespace headless
