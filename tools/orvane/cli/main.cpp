// orvane: looks into a simulator through the plugin, and steers it.

#include "tools/orvane/cli/ExitCode.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <exception>

#include "orvane/Errors.h"

namespace {

using orvane::tool::ExitCode;
using orvane::tool::GlobalOptions;
using orvane::tool::Work;

constexpr const char* kFooter =
    "Exit status: 0 done, 1 wrong usage, 2 cannot connect, 3 not found or refused, 4 timed out,\n"
    "5 the server spoke nonsense.\n"
    "\n"
    "Examples:\n"
    "  orvane info\n"
    "  orvane get sim/cockpit2/controls/yoke_pitch_ratio\n"
    "  orvane watch sim/time/total_running_time_sec --host 192.0.2.7\n"
    "  orvane get --help";

ExitCode complain(ExitCode code, const std::string& line) {
    orvane::tool::tell(line);
    return code;
}

ExitCode run(const Work& work) {
    try {
        return work();
    } catch (const orvane::tool::ReaderGone&) {
        return ExitCode::Done;
    } catch (const orvane::tool::Failure& failure) {
        return complain(failure.Code(), failure.what());
    } catch (const orvane::ConnectError& error) {
        return complain(ExitCode::CannotConnect, error.what());
    } catch (const orvane::ClosedError& error) {
        return complain(ExitCode::CannotConnect, error.what());
    } catch (const orvane::TimeoutError& error) {
        return complain(ExitCode::TimedOut, error.what());
    } catch (const orvane::CancelledError&) {
        return complain(ExitCode::TimedOut, "interrupted before the answer came");
    } catch (const orvane::Refused& error) {
        return complain(ExitCode::NotFoundOrRefused, error.what());
    } catch (const orvane::Error& error) {
        return complain(ExitCode::Nonsense, error.what());
    } catch (const std::exception& error) {
        return complain(ExitCode::WrongUsage, error.what());
    }
}

// One line instead of CLI11's several; the help texts are long.
ExitCode complainOfUsage(const CLI::ParseError& error) {
    return complain(ExitCode::WrongUsage, fmt::format("{} (see --help)", error.what()));
}

int parseAndRun(int argc, char** argv) {
    CLI::App app("Looks into a simulator through the XPlaneOrvane plugin, and steers it.",
                 "orvane");
    app.footer(kFooter);
    app.require_subcommand(1);
    app.fallthrough();
    GlobalOptions globals;
    orvane::tool::declareGlobalOptions(app, globals);
    Work work;
    orvane::tool::addInfo(app, globals, work);
    orvane::tool::addGet(app, globals, work);
    orvane::tool::addSet(app, globals, work);
    orvane::tool::addWatch(app, globals, work);
    orvane::tool::addCommand(app, globals, work);
    orvane::tool::addLatency(app, globals, work);
    orvane::tool::addDrive(app, globals, work);
    orvane::tool::addRecord(app, globals, work);
    orvane::tool::addReplay(app, globals, work);
    orvane::tool::addConfig(app, globals, work);
    orvane::tool::addDump(app, globals, work);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return app.exit(error);
        }
        return static_cast<int>(complainOfUsage(error));
    }
    orvane::tool::catchInterrupts();
    return static_cast<int>(run(work));
}

} // namespace

int main(int argc, char** argv) {
    // A reader that goes away, as `head` does, shows as a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return parseAndRun(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvane: %s\n", error.what());
        return static_cast<int>(ExitCode::WrongUsage);
    }
}
