#include "headless/host/AbortReport.h"

#include <unistd.h>

#include <string_view>

namespace headless {

namespace {

// All that the signal handler can reach.
const Log* reportedLog = nullptr;
std::string reportedPlugin;

// How a network plugin says that another program has its port (98 is EADDRINUSE).
constexpr std::string_view kPortTaken = "bind() : Unknown Socket Error Code 98";

void say(std::string_view text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

extern "C" void onAbort(int number) {
    const std::string_view line = reportedLog->LastLine();
    say("headless-sim: ");
    say(reportedPlugin);
    if (line.find(kPortTaken) != std::string_view::npos) {
        say(": another program has the plugin's port; end that program (ss -ltnp lists them) and "
            "start again");
    } else {
        say(": the plugin ended the process (abort); last line of the log: ");
        say(line);
    }
    say("\n");
    ::signal(number, SIG_DFL);
    ::raise(number);
}

} // namespace

AbortReport::AbortReport(const Log& simulatorLog, const std::string& pluginFile) {
    reportedLog = &simulatorLog;
    reportedPlugin = pluginFile;
    struct sigaction action {};
    action.sa_handler = &onAbort;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGABRT, &action, &former);
}

AbortReport::~AbortReport() {
    ::sigaction(SIGABRT, &former, nullptr);
}

} // namespace headless
