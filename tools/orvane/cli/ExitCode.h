#pragma once

namespace orvane::tool {

// What the tool's exit status means; scripts rely on the numbers.
enum class ExitCode {
    Done = 0,
    WrongUsage = 1,
    CannotConnect = 2,
    NotFoundOrRefused = 3,
    TimedOut = 4,
    Nonsense = 5, // from the server, or in a file that claims to be a recording of one
};

} // namespace orvane::tool
