#include "tools/orvane/serve/HttpMessages.h"

#include <utility>

namespace orvane::tool {

HttpAnswer textAnswer(int status, const std::string& line) {
    return {status, "text/plain; charset=utf-8", line + "\n", {}};
}

HttpAnswer jsonAnswer(std::string text) {
    return {200, "application/json", std::move(text), {}};
}

} // namespace orvane::tool
