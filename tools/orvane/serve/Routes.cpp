#include "tools/orvane/serve/Routes.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/Controls.h"
#include "tools/orvane/serve/Hub.h"
#include "tools/orvane/serve/NameSearch.h"
#include "tools/orvane/serve/PageFiles.h"
#include "tools/orvane/serve/RequestBody.h"
#include "tools/orvane/serve/RequestCheck.h"

namespace orvane::tool {

namespace {

constexpr std::chrono::milliseconds kSilence(500);

} // namespace

Routes::Routes(Hub& hub, Controls* controls, const NameSearch& names, std::string start)
    : hub(hub), controls(controls), names(names), start(std::move(start)) {}

HttpAnswer Routes::Answer(const HttpRequest& request) const {
    try {
        return request.method == "POST" ? post(request) : get(request);
    } catch (const Failure& failure) {
        return textAnswer(400, failure.what());
    }
}

HttpAnswer Routes::get(const HttpRequest& request) const {
    if (request.path == "/events") {
        return events(request);
    }
    if (request.path == "/start") {
        return jsonAnswer(start);
    }
    if (request.path == "/names") {
        return jsonAnswer(names.Matching(request.match) + "\n");
    }
    const std::string path = request.path == "/" ? "/index.html" : request.path;
    const auto files = pageFiles();
    const auto file = std::find_if(files.begin(), files.end(),
                                   [&](const PageFile& each) { return each.path == path; });
    if (file == files.end()) {
        return textAnswer(404, "there is no such page");
    }
    return {200, std::string(file->type), std::string(file->text), {}};
}

HttpAnswer Routes::events(const HttpRequest& request) const {
    if (!isPageId(request.id)) {
        return textAnswer(400, "\"id\" is not 16 to 64 letters and digits");
    }
    const auto stream = hub.Open(request.id);
    if (!stream) {
        return textAnswer(503, "too many pages are open");
    }
    return {200, "text/event-stream", {}, [stream] { return stream->Next(kSilence); }};
}

HttpAnswer Routes::post(const HttpRequest& request) const {
    if (request.path == "/watch") {
        hub.Want(parseWanted(request.body));
        return jsonAnswer("{}\n");
    }
    if (controls == nullptr) {
        return textAnswer(409, "a recording cannot be changed");
    }
    if (request.path == "/set") {
        return controls->Set(parseSet(request.body));
    }
    if (request.path == "/press") {
        return controls->Press(parseCommand(request.body).command);
    }
    if (request.path == "/hold") {
        return controls->Hold(parseCommand(request.body));
    }
    if (request.path == "/release") {
        return controls->Release(parseCommand(request.body));
    }
    return textAnswer(404, "there is no such request");
}

} // namespace orvane::tool
