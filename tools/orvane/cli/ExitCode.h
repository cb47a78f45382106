#pragma once

#include <array>

namespace orvane::tool {

// What the tool's exit status means; scripts rely on the numbers.
enum class ExitCode {
    Done = 0,
    WrongUsage = 1,
    CannotConnect = 2,
    NotFoundOrRefused = 3,
    TimedOut = 4,
    UnexpectedAnswer = 5,
};

struct ExitMeaning {
    ExitCode code;
    const char* text;
};

inline constexpr std::array<ExitMeaning, 6> kExitMeanings{{
    {ExitCode::Done, "done"},
    {ExitCode::WrongUsage, "wrong usage, or a file that cannot be read or written"},
    {ExitCode::CannotConnect, "cannot connect, or the connection was lost"},
    {ExitCode::NotFoundOrRefused, "the simulator does not have it, or refused it"},
    {ExitCode::TimedOut, "no answer in time, or interrupted before it came"},
    {ExitCode::UnexpectedAnswer,
     "the server sent something unexpected, or a file is not a valid recording"},
}};

} // namespace orvane::tool
