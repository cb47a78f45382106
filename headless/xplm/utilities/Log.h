#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace headless {

// The simulator's log: text as it was given, in memory and, once a file is opened, also there.
//
// The file is unbuffered, because a plugin may abort the process right after its last line. Long
// runs with a file can do without the copy in memory.
class Log final {
public:
    Log() { tail.reserve(4 * kTail); }
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    void Write(std::string_view added);

    // Empties or creates the file. Throws std::runtime_error if that fails.
    void OpenFile(const std::string& path);

    void EchoToStderr(bool on) { echo = on; }
    void KeepInMemory(bool on) { keep = on; }

    // The last line, without its newline, even if nothing is kept in memory; only the end of a long
    // line. Valid until the next Write(). Allocates nothing, so a signal handler may call it.
    std::string_view LastLine() const;

    const std::string& Text() const { return text; }
    // The text split at its newlines, without them. Includes a last line that has no newline yet.
    std::vector<std::string> Lines() const;

private:
    static constexpr std::size_t kTail = 1024;

    // Plugins write from threads of their own.
    std::mutex mutex;
    std::string text;
    // The last kTail characters or a little more.
    std::string tail;
    int file = -1;
    bool echo = false;
    bool keep = true;
};

} // namespace headless
