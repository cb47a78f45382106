#include "tools/orvane/files/Output.h"

#include "tools/orvane/cli/Failure.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace orvane::tool {

void writeOut(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EPIPE) {
            throw ReaderGone();
        } else if (errno != EINTR) {
            throw Failure(ExitCode::WrongUsage,
                          fmt::format("cannot write to standard output: {}", std::strerror(errno)));
        }
    }
}

void tell(std::string_view line) {
    fmt::print(stderr, "orvane: {}\n", line);
}

} // namespace orvane::tool
