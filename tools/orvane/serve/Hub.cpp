#include "tools/orvane/serve/Hub.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/serve/HttpServer.h"

namespace orvane::tool {

namespace {

// A page that gets nothing for longer takes the values for old.
constexpr double kLongestSilence = 0.2;
constexpr std::size_t kMostSeries = 2048;

// Adds a dataref to those that are read. A type that one page gives holds for all.
void join(std::vector<DatarefArgument>& all, const DatarefArgument& argument) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const DatarefArgument& each) {
        return each.name == argument.name;
    });
    if (found == all.end()) {
        all.push_back(argument);
    } else if (!found->type) {
        *found = argument;
    } else if (argument.type && argument.NameAndType() != found->NameAndType()) {
        throw Failure(ExitCode::WrongUsage, fmt::format("{}: another page reads it as {}",
                                                        argument.text, found->NameAndType()));
    }
}

} // namespace

void Hub::Page::Send(std::string_view event) const {
    if (const auto open = stream.lock()) {
        open->Push(event);
    }
}

Hub::Union Hub::All() const {
    const std::lock_guard lock(mutex);
    Union all = unionOf(pages);
    all.generation = generation;
    return all;
}

std::uint64_t Hub::Generation() const {
    const std::lock_guard lock(mutex);
    return generation;
}

Hub::Union Hub::unionOf(const std::vector<Page>& pages) {
    Union all;
    for (const Page& page : pages) {
        for (const DatarefArgument& argument : page.wanted.datarefs) {
            join(all.datarefs, argument);
        }
        for (const std::string& command : page.wanted.commands) {
            if (std::find(all.commands.begin(), all.commands.end(), command) ==
                all.commands.end()) {
                all.commands.push_back(command);
            }
        }
    }
    shareArrays(all.datarefs);
    return all;
}

void Hub::SetDatarefs(const std::vector<DatarefArgument>& newKnown,
                      std::vector<std::string> newMissing) {
    const std::lock_guard lock(mutex);
    known = newKnown;
    missing = std::move(newMissing);
    for (Page& page : pages) {
        layOut(page);
    }
}

void Hub::layOut(Page& page) const {
    page.shown.clear();
    page.needsAll = true;
    std::size_t series = 0;
    for (const DatarefArgument& wanted : page.wanted.datarefs) {
        const auto found = std::find_if(known.begin(), known.end(),
                                        [&](const auto& each) { return each.name == wanted.name; });
        if (found == known.end() || series + countOf(*found) > kMostSeries) {
            continue;
        }
        ShownDataref shown{*found, static_cast<std::size_t>(found - known.begin()), series,
                           countOf(*found)};
        shown.argument.unit = wanted.unit;
        shown.argument.text = wanted.text;
        series += shown.count;
        page.shown.push_back(std::move(shown));
    }
    // The same again would only make the page draw everything anew.
    const std::string event = seriesEvent(page.shown, missing);
    if (event != page.series) {
        page.Send(event);
    }
    page.series = event;
}

void Hub::Show(const std::vector<velmar::Value>& values, const std::vector<std::size_t>& changed) {
    const double now = Seconds();
    const std::lock_guard lock(mutex);
    forgetGone();
    std::vector<bool> isChanged(values.size());
    for (const std::size_t place : changed) {
        isChanged[place] = true;
    }
    const std::vector<bool> all(values.size(), true);
    for (Page& page : pages) {
        const bool isNews = page.needsAll || std::any_of(page.shown.begin(), page.shown.end(),
                                                         [&](const ShownDataref& each) {
                                                             return isChanged[each.place];
                                                         });
        if (!isNews && now - page.toldAt < kLongestSilence) {
            continue;
        }
        page.Send(readingEvent(now, page.shown, values, page.needsAll ? all : isChanged));
        page.needsAll = false;
        page.toldAt = now;
    }
}

void Hub::Tell(LiveState state, const std::string& text) {
    const double now = Seconds();
    const std::lock_guard lock(mutex);
    lastState = stateEvent(now, state == LiveState::Aircraft ? LiveState::Connected : state, text);
    const std::string event = stateEvent(now, state, text);
    for (const Page& page : pages) {
        page.Send(event);
    }
}

void Hub::Report(const CommandEvent& event) {
    const std::string text = commandEvent(Seconds(), event);
    const std::lock_guard lock(mutex);
    for (const Page& page : pages) {
        const std::vector<std::string>& wanted = page.wanted.commands;
        if (std::find(wanted.begin(), wanted.end(), event.command) != wanted.end()) {
            page.Send(text);
        }
    }
}

void Hub::CloseAll() {
    const std::lock_guard lock(mutex);
    for (const Page& page : pages) {
        if (const auto stream = page.stream.lock()) {
            stream->Close();
        }
    }
}

void Hub::forgetGone() {
    const auto isGone = [](const Page& page) {
        const auto stream = page.stream.lock();
        return !stream || stream->IsClosed();
    };
    if (std::erase_if(pages, isGone) > 0) {
        ++generation;
    }
}

std::shared_ptr<EventStream> Hub::Open(const std::string& id) {
    const std::lock_guard lock(mutex);
    for (const Page& page : pages) {
        const auto older = page.stream.lock();
        if (older && page.id == id) {
            older->Close();
        }
    }
    forgetGone();
    if (pages.size() >= HttpServer::kMostStreams) {
        return nullptr;
    }
    auto stream = std::make_shared<EventStream>();
    // What has happened before it came.
    stream->Push(lastState);
    Page page;
    page.id = id;
    page.stream = stream;
    pages.push_back(std::move(page));
    return stream;
}

void Hub::Want(Wanted wanted) {
    const std::lock_guard lock(mutex);
    std::vector<Page> changed = pages;
    const auto page = std::find_if(changed.begin(), changed.end(),
                                   [&](const Page& each) { return each.id == wanted.id; });
    if (page == changed.end()) {
        throw Failure(ExitCode::NotFoundOrRefused, "this page has no open stream");
    }
    page->wanted = std::move(wanted);
    page->shown.clear();
    unionOf(changed); // throws before anything has changed
    pages = std::move(changed);
    ++generation;
}

double Hub::Seconds() const {
    return secondsSince(start);
}

} // namespace orvane::tool
