#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

// Finds what the items of a message refer to, and remembers it by the item's position: clients send
// the same items again and again, and a look-up gets slower as targets grow.
//
// Remembers at most as many items as there are targets.
template <typename Identifier, typename Target>
class RepeatedLookup final {
public:
    using Targets = std::map<Identifier, std::unique_ptr<Target>>;

    // Null when there is no such target.
    Target* Find(const Targets& targets, Identifier identifier, std::size_t position) {
        if (position < items.size() && items[position].first == identifier) {
            return items[position].second;
        }
        const auto found = targets.find(identifier);
        if (found == targets.end()) {
            return nullptr;
        }
        remember(position, {identifier, found->second.get()}, targets.size());
        return found->second.get();
    }

    // To be called before a target is deleted.
    void Forget() { items.clear(); }

private:
    using Item = std::pair<Identifier, Target*>;

    void remember(std::size_t position, const Item& item, std::size_t limit) {
        if (position < items.size()) {
            items[position] = item;
        } else if (position == items.size() && position < limit) {
            items.push_back(item);
        }
    }

    std::vector<Item> items;
};
