#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace headless {

// The simulator's log: text as it was given, in memory and, once a file is opened, there as well.
//
// The file is written without buffering, because a plugin may abort the process right after its
// last line. Long runs with a file can do without the copy in memory.
class Log final {
public:
    Log() { tail.reserve(4 * kTail); }
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    void Write(std::string_view added);

    // Empties the file or makes it. Throws std::runtime_error when that is not possible.
    void OpenFile(const std::string& path);

    void EchoToStderr(bool on) { echo = on; }
    void KeepInMemory(bool on) { keep = on; }

    // The last line, without its newline, also when nothing is kept in memory. Of a long line the
    // end. Valid until the next Write(); takes no memory, so that a signal handler may ask.
    std::string_view LastLine() const;

    const std::string& Text() const { return text; }
    // The text split at its newlines, without them. A line without its newline yet is included.
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
