#pragma once

#include <string>

#include "tools/orvane/serve/HttpMessages.h"

namespace orvane::tool {

class Controls;
class Hub;
class NameSearch;

// What a request of our page is answered with. `start` is JSON that tells a page what to show
// first.
class Routes final {
public:
    // Without controls, as in a replay, all that would write is refused. Borrows all three.
    Routes(Hub& hub, Controls* controls, const NameSearch& names, std::string start);

    HttpAnswer Answer(const HttpRequest& request) const;

private:
    HttpAnswer get(const HttpRequest& request) const;
    HttpAnswer events(const HttpRequest& request) const;
    HttpAnswer post(const HttpRequest& request) const;

    Hub& hub;
    Controls* const controls;
    const NameSearch& names;
    const std::string start;
};

} // namespace orvane::tool
