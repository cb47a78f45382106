#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orvane/serve/EventStream.h"
#include "tools/orvane/serve/Events.h"
#include "tools/orvane/serve/RequestBody.h"

namespace orvane::tool {

// Where one reader of values and any number of pages meet: it knows what the pages want, and sends
// each what has changed of it. Usable from several threads; no call waits for a page.
class Hub final {
public:
    // The reader's side: what all pages want together. The generation changes with it.
    struct Union {
        std::uint64_t generation = 0;
        std::vector<DatarefArgument> datarefs;
        std::vector<std::string> commands;
    };
    Union All() const;
    std::uint64_t Generation() const;

    // What the following values belong to, and the wanted names that cannot be had.
    void SetDatarefs(const std::vector<DatarefArgument>& known, std::vector<std::string> missing);
    void Show(const std::vector<velmar::Value>& values, const std::vector<std::size_t>& changed);
    void Tell(LiveState state, const std::string& text);
    void Report(const CommandEvent& event);
    void CloseAll();

    // The pages' side. Opens the stream of a page; an older one of the same page ends. Null: there
    // are too many. A page is forgotten when its stream is destroyed.
    std::shared_ptr<EventStream> Open(const std::string& id);
    // Failure: there is no such page, or another page wants the same dataref as another type.
    void Want(Wanted wanted);

    // Seconds since the hub was made, the time of all events.
    double Seconds() const;

private:
    struct Page {
        std::string id;
        std::weak_ptr<EventStream> stream;
        Wanted wanted;
        std::vector<ShownDataref> shown;
        std::string series; // the event that it has got
        bool needsAll = false;
        double toldAt = 0;

        void Send(std::string_view event) const;
    };

    void forgetGone();
    static Union unionOf(const std::vector<Page>& pages);
    void layOut(Page& page) const;

    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    mutable std::mutex mutex;
    std::vector<Page> pages;
    std::uint64_t generation = 0;
    std::vector<DatarefArgument> known;
    std::vector<std::string> missing;
    std::string lastState;
};

} // namespace orvane::tool
