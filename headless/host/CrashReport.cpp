#include "headless/host/CrashReport.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "headless/host/TerminalSettings.h"

namespace headless {

namespace {

// Globals, because the signal handler can reach nothing else.
Simulator* reported = nullptr;
pid_t simulatorThread = 0;
// After a stack overflow the plugin's own stack has no room for the report.
std::array<char, 0x10000> signalStack;

// The last log line of a network plugin whose port is taken (98 is EADDRINUSE).
constexpr std::string_view kPortTaken = "bind() : Unknown Socket Error Code 98";

// The thread's call stack, innermost frame first.
class Backtrace final {
public:
    Backtrace() : depth(::backtrace(frames.data(), static_cast<int>(frames.size()))) {}

    void Print() const { ::backtrace_symbols_fd(frames.data(), depth, STDERR_FILENO); }

    // The innermost plugin in the backtrace, or null.
    const PluginTexts* Plugin(const PluginRegistry& plugins) const {
        for (int i = 0; i < depth; ++i) {
            Dl_info place{};
            if (::dladdr(frames[static_cast<std::size_t>(i)], &place) == 0) {
                continue;
            }
            for (int nth = 0; nth < plugins.Count(); ++nth) {
                const PluginTexts* const texts = plugins.TextsOf(plugins.Nth(nth));
                if (texts->path == place.dli_fname) {
                    return texts;
                }
            }
        }
        return nullptr;
    }

private:
    std::array<void*, 64> frames{};
    int depth;
};

void say(std::string_view text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

void saySignal(int number) {
    say("SIG");
    say(::sigabbrev_np(number));
}

void sayPlugin(const PluginTexts* texts) {
    say("headless-sim: ");
    say(texts == nullptr ? "a plugin" : std::string_view(texts->path));
}

void sayLastLine() {
    const std::string_view line = reported->Log().LastLine();
    if (!line.empty()) {
        say("headless-sim: last line of the log: ");
        say(line);
        say("\n");
    }
}

bool portIsTaken(int number) {
    return number == SIGABRT &&
           reported->Log().LastLine().find(kPortTaken) != std::string_view::npos;
}

void sayCrash(int number, const char* where, const char* callback) {
    say(": the plugin crashed in ");
    say(where);
    say(callback);
    say(" (");
    saySignal(number);
    say("); backtrace:\n");
}

// The program itself crashed, not a plugin.
void crash(int number, const Backtrace& backtrace) {
    say("headless-sim: the program itself crashed (");
    saySignal(number);
    say("); backtrace:\n");
    backtrace.Print();
    // Delivered as soon as the handler returns.
    ::raise(number);
}

extern "C" void onCrash(int number) {
    // Any further crash ends the process at once.
    for (const int one : CrashReport::kSignals) {
        ::signal(one, SIG_DFL);
    }
    restoreTerminalSettings();
    const Backtrace backtrace;
    const PluginContext& context = reported->Context();
    const bool inCall = ::gettid() == simulatorThread && context.Plugin() != XPLM_PLUGIN_XPLANE;
    const PluginTexts* const texts = inCall ? reported->Plugins().TextsOf(context.Plugin())
                                            : backtrace.Plugin(reported->Plugins());
    if (texts == nullptr && !inCall) {
        crash(number, backtrace);
        return;
    }
    sayPlugin(texts);
    if (portIsTaken(number)) {
        say(": another program has the plugin's port; end that program (ss -ltnp lists them) and "
            "start again\n");
    } else {
        sayCrash(number, inCall ? "its " : "a thread of its own", inCall ? context.Callback() : "");
        backtrace.Print();
        sayLastLine();
    }
    // Where no descriptor is left, a sanitizer would fail in _exit().
    ::syscall(SYS_exit_group, CrashReport::kExitStatus);
}

// Without this a plugin that calls exit(0) would look like a flight that ended as requested.
void onExit() {
    if (reported == nullptr || reported->Context().Plugin() == XPLM_PLUGIN_XPLANE) {
        return;
    }
    const PluginContext& context = reported->Context();
    sayPlugin(reported->Plugins().TextsOf(context.Plugin()));
    say(": the plugin ended the process in its ");
    say(context.Callback());
    say("\n");
    ::_exit(CrashReport::kExitStatus);
}

} // namespace

CrashReport::CrashReport(Simulator& reportedSimulator) {
    reported = &reportedSimulator;
    [[maybe_unused]] static const int isRegistered = std::atexit(&onExit);
    simulatorThread = ::gettid();
    // The first call to backtrace() loads a library, which a signal handler must not do.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
    stack_t stack{};
    stack.ss_sp = signalStack.data();
    stack.ss_size = signalStack.size();
    ::sigaltstack(&stack, &formerStack);
    struct sigaction action {};
    action.sa_handler = &onCrash;
    action.sa_flags = SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &action, &former[i]);
    }
}

CrashReport::~CrashReport() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &former[i], nullptr);
    }
    ::sigaltstack(&formerStack, nullptr);
    reported = nullptr;
}

void CrashReport::End(Simulator& simulator, const char* what) {
    restoreTerminalSettings();
    const Backtrace backtrace;
    sayPlugin(simulator.Plugins().TextsOf(simulator.Context().Plugin()));
    say(what);
    say(simulator.Context().Callback());
    say("; backtrace:\n");
    backtrace.Print();
    ::_exit(kExitStatus);
}

} // namespace headless
