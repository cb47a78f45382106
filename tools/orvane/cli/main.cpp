// orvane: reads and controls a simulator through the plugin.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/core.h>

#include "orvane/Errors.h"
#include "tools/orvane/cli/ExitCode.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/cli/HelpFormatter.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/cli/UsageProblem.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/find/NameCompletions.h"
#include "tools/orvane/help/Completions.h"
#include "tools/orvane/help/ManPage.h"

namespace {

using namespace orvane::tool;

constexpr const char* kDetails =
    R"(Data goes to standard output, and everything else to standard error. Ctrl-C,
SIGTERM and SIGHUP end a command cleanly: what it holds down in the simulator is
released first.

Exit status:
{}
Environment:
  NO_COLOR  nothing is bold if it is set and not empty
  TERM      nothing is bold or redrawn if it is "dumb" or not set

Examples:
  orvane info
  orvane get sim/cockpit2/controls/yoke_pitch_ratio
  orvane watch sim/time/total_running_time_sec --host 192.0.2.7
  orvane help get)";

std::string detailsOfTool() {
    std::string meanings;
    for (const ExitMeaning& meaning : kExitMeanings) {
        meanings += fmt::format("  {}  {}\n", static_cast<int>(meaning.code), meaning.text);
    }
    return fmt::format(kDetails, meanings);
}

void declare(CLI::App& app, GlobalOptions& globals, Work& work) {
    app.footer(detailsOfTool());
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_version_flag("--version", "orvane " ORVANE_VERSION, "Print the version and exit");
    app.require_subcommand(1);
    app.fallthrough();
    declareGlobalOptions(app, globals);
    Subcommands subcommands(app, globals, work);
    addInfo(subcommands);
    addDiscover(subcommands);
    addFind(subcommands);
    addGet(subcommands);
    addSet(subcommands);
    addWatch(subcommands);
    addCommand(subcommands);
    addLatency(subcommands);
    addDrive(subcommands);
    addRecord(subcommands);
    addReplay(subcommands);
    addServe(subcommands);
    addConfig(subcommands);
    addPlugin(subcommands);
    addHelp(subcommands);
}

ExitCode print(const std::string& text) {
    writeOut(text);
    return ExitCode::Done;
}

ExitCode parseAndRun(int argc, char** argv) {
    CLI::App app("Read and control a simulator through the XPlaneOrvane plugin", "orvane");
    GlobalOptions globals;
    Work work;
    declare(app, globals, work);
    // For the completion scripts and the build.
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words[0] == "__complete") {
        return print(completionsOf(app, {words.begin() + 1, words.end()}, nameCompletions));
    }
    if (!words.empty() && words[0] == "__man") {
        return print(manPageOf(app, ORVANE_VERSION));
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return print(app.help());
    } catch (const CLI::CallForVersion& version) {
        return print(std::string(version.what()) + "\n");
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitCode::WrongUsage, usageProblem(app, error));
    }
    catchInterrupts();
    return work();
}

// What is opened later must not take the place of standard output or error.
void fillStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            ::open("/dev/null", O_RDONLY); // takes the lowest; writing to it still fails
        }
    }
}

ExitCode fail(ExitCode code, const std::string& line) {
    tell(line);
    return code;
}

ExitCode run(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const ReaderGone&) {
        return ExitCode::Done;
    } catch (const Failure& failure) {
        return fail(failure.Code(), failure.what());
    } catch (const orvane::ConnectError& error) {
        return fail(ExitCode::CannotConnect, error.what());
    } catch (const orvane::ClosedError& error) {
        return fail(ExitCode::CannotConnect, error.what());
    } catch (const orvane::TimeoutError& error) {
        return fail(ExitCode::TimedOut, error.what());
    } catch (const orvane::CancelledError&) {
        return fail(ExitCode::TimedOut, "interrupted before the answer came");
    } catch (const orvane::Refused& error) {
        return fail(ExitCode::NotFoundOrRefused, error.what());
    } catch (const orvane::Error& error) {
        return fail(ExitCode::UnexpectedAnswer, error.what());
    } catch (const std::exception& error) {
        return fail(ExitCode::WrongUsage, error.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    fillStandardDescriptors();
    // A reader that goes away, as `head` does, shows as a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    return static_cast<int>(run(argc, argv));
}
