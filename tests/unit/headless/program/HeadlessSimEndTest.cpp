#include <elf.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HeadlessSimRun.h"
#include "support/Text.h"

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// How a run ends early: by a signal, by a plugin, or because it is given what it cannot fly.
class HeadlessSimEndTest : public HeadlessSimRun {
protected:
    // Sends the signal once the log shows that the plugin was started, or after ten seconds.
    int runAndSignal(const std::string& arguments, const std::string& signal) {
        return run(arguments +
                   " & pid=$!; until=$(($(date +%s) + 10)); "
                   "until grep -qs message Log.txt || [ $(date +%s) -gt $until ]; do :; done; "
                   "kill -" +
                   signal + " $pid; wait $pid");
    }
};

TEST_F(HeadlessSimEndTest, ASignalEndsTheRunInOrder) {
    EXPECT_EQ(runAndSignal(FAKE_PLUGIN, "TERM"), 0);
    EXPECT_THAT(folder.Read("Log.txt"), EndsWith("disable\nstop\n"));
    EXPECT_THAT(output, StartsWith("frames "));
}

TEST_F(HeadlessSimEndTest, ASignalEndsAPausedRunToo) {
    EXPECT_EQ(runAndSignal(FAKE_PLUGIN " --paused", "INT"), 0);
    EXPECT_THAT(folder.Read("Log.txt"), EndsWith("disable\nstop\n"));
    EXPECT_THAT(output, StartsWith("frames 0, "));
}

// Signals that come before the first one is handled count as one.
TEST_F(HeadlessSimEndTest, ASecondSignalEndsARunThatHangs) {
    EXPECT_EQ(runAndSignal(HANGING_PLUGIN,
                           "INT $pid; while kill -INT $pid && "
                           "! grep -qs '^State:.Z' /proc/$pid/status; do :; done; kill -0"),
              -SIGINT);
    EXPECT_EQ(output, "");
}

TEST_F(HeadlessSimEndTest, TheWatchdogNamesThePluginThatHangs) {
    EXPECT_EQ(run("--watchdog 0.2 " HANGING_PLUGIN), 5);
    EXPECT_THAT(errors, StartsWith("headless-sim: " HANGING_PLUGIN
                                   ": the plugin does not return from its flight loop; "
                                   "backtrace:\n"));
    EXPECT_THAT(errors, HasSubstr("hanging_plugin.xpl("));
    EXPECT_EQ(run("--watchdog 0.2 --duration 0.5 " FAKE_PLUGIN), 0);
    EXPECT_EQ(errors, "");
}

TEST_F(HeadlessSimEndTest, APluginThatCrashesIsNamedWithItsCallbackAndThePlace) {
    for (const auto& [number, name] : {std::pair{SIGSEGV, "SIGSEGV"},
                                       {SIGBUS, "SIGBUS"},
                                       {SIGILL, "SIGILL"},
                                       {SIGFPE, "SIGFPE"},
                                       {SIGABRT, "SIGABRT"}}) {
        ::setenv("HEADLESS_TEST_CRASH", std::to_string(number).c_str(), 1);
        EXPECT_EQ(run(FAKE_PLUGIN " " CRASHING_PLUGIN " " NEIGHBOUR_PLUGIN), 5) << name;
        EXPECT_THAT(errors, StartsWith("headless-sim: " CRASHING_PLUGIN
                                       ": the plugin crashed in its flight loop (" +
                                       std::string(name) + "); backtrace:\n"));
        EXPECT_THAT(errors, HasSubstr("crashing_plugin.xpl("));
        EXPECT_THAT(errors, EndsWith("headless-sim: last line of the log: the last line\n"));
    }
    EXPECT_THAT(folder.Read("Log.txt"), EndsWith("the last line\n"));
}

TEST_F(HeadlessSimEndTest, ACrashIsReportedWhereverItHappens) {
    const std::string plugin = "headless-sim: " CRASHING_PLUGIN ": the plugin crashed in ";
    ::setenv("HEADLESS_TEST_CRASH", "read", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, StartsWith(plugin + "its flight loop (SIGSEGV)"));
    ::setenv("HEADLESS_TEST_CRASH", "start", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, StartsWith(plugin + "its XPluginStart (SIGSEGV)"));
    ::setenv("HEADLESS_TEST_CRASH", "thread", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, StartsWith(plugin + "a thread of its own (SIGSEGV)"));
    ::setenv("HEADLESS_TEST_CRASH", "stack", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, StartsWith(plugin + "its flight loop (SIGSEGV)"));
}

TEST_F(HeadlessSimEndTest, AnExceptionThatLeavesAPluginIsACrash) {
    ::setenv("HEADLESS_TEST_CRASH", "throw", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, HasSubstr("nobody catches this\n"));
    EXPECT_THAT(errors, HasSubstr("headless-sim: " CRASHING_PLUGIN
                                  ": the plugin crashed in its flight loop (SIGABRT)"));
    ::setenv("HEADLESS_TEST_CRASH", "constructor", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_THAT(errors, HasSubstr("headless-sim: " CRASHING_PLUGIN
                                  ": the plugin crashed in its constructors (SIGABRT)"));
}

TEST_F(HeadlessSimEndTest, APluginThatEndsTheProcessIsNamed) {
    ::setenv("HEADLESS_TEST_CRASH", "exit", 1);
    EXPECT_EQ(run(CRASHING_PLUGIN), 5);
    EXPECT_EQ(errors, "headless-sim: " CRASHING_PLUGIN
                      ": the plugin ended the process in its flight loop\n");
    EXPECT_EQ(log(), "the last line\n");
}

TEST_F(HeadlessSimEndTest, APluginThatCannotBeLoadedIsOneLineAndStatus1) {
    EXPECT_EQ(run("none.xpl"), 1);
    EXPECT_EQ(errors, "headless-sim: none.xpl: there is no such plugin\n");
    EXPECT_EQ(output, "");
    EXPECT_EQ(run(INCOMPLETE_PLUGIN), 1);
    EXPECT_THAT(errors, EndsWith(": not a plugin: it has no XPluginDisable\n"));
    EXPECT_EQ(run("--check " INCOMPLETE_PLUGIN), 1);
    EXPECT_THAT(errors, EndsWith(": not a plugin: it has no XPluginDisable\n"));
}

TEST_F(HeadlessSimEndTest, AFileThatIsNotAPluginIsOneLineAndStatus1) {
    std::string library(64, '\0');
    library.replace(0, SELFMAG, ELFMAG);
    library[EI_CLASS] = ELFCLASS64;
    library[offsetof(Elf64_Ehdr, e_type)] = ET_DYN;
    library[offsetof(Elf64_Ehdr, e_machine)] = EM_ARM;
    folder.Write("other.xpl", library);
    folder.Write("text.xpl", "not a library at all, just some text\n");
    folder.Write("empty.xpl", "");
    folder.Write("cut.xpl", ELFMAG);
    std::ifstream whole(FAKE_PLUGIN, std::ios::binary);
    std::string half(4000, '\0');
    whole.read(half.data(), 4000);
    folder.Write("half.xpl", half);
    for (const auto& [file, error] :
         {std::pair{"other.xpl",
                    "the plugin is built for another kind of computer (64 bits, machine "
                    "40); this one needs 64 bits, machine "},
          {"text.xpl", "not a plugin for Linux: it is not a shared library (ELF)\n"},
          {"empty.xpl", "not a plugin for Linux: it is not a shared library (ELF)\n"},
          {"cut.xpl", "not a plugin for Linux: it is not a shared library (ELF)\n"},
          {"half.xpl", "the plugin's file is cut short, at 4000 bytes\n"},
          {HEADLESS_SIM, ""}}) {
        EXPECT_EQ(run(FAKE_PLUGIN + std::string(" ") + file), 1) << file;
        EXPECT_THAT(errors, StartsWith("headless-sim: ")) << file;
        EXPECT_THAT(errors, HasSubstr(std::string(file) + ": " + error));
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
        EXPECT_EQ(output, "");
    }
}

TEST_F(HeadlessSimEndTest, OneOfSeveralThatCannotBeLoadedIsOneLineAndStatus1) {
    EXPECT_EQ(run(FAKE_PLUGIN " none.xpl"), 1);
    EXPECT_EQ(errors, "headless-sim: none.xpl: there is no such plugin\n");
    EXPECT_EQ(run(FAKE_PLUGIN " " INCOMPLETE_PLUGIN), 1);
    EXPECT_EQ(errors,
              "headless-sim: " INCOMPLETE_PLUGIN ": not a plugin: it has no XPluginDisable\n");
    EXPECT_EQ(run(FAKE_PLUGIN " ."), 1);
    EXPECT_THAT(errors, StartsWith("headless-sim: .: the folder has no plugin: "));
    EXPECT_EQ(errors.find('\n'), errors.size() - 1);
}

TEST_F(HeadlessSimEndTest, FliesThePluginsOfASystemFolderInIt) {
    const std::string plugins = folder.Path("xp/Resources/plugins/");
    std::filesystem::create_directories(plugins + "two/64");
    std::filesystem::create_directories(plugins + "one/lin_x64");
    std::filesystem::copy(FAKE_PLUGIN, plugins + "two/64/lin.xpl");
    std::filesystem::copy(NEIGHBOUR_PLUGIN, plugins + "one/lin_x64/one.xpl");
    folder.Write("more.txt", "my/dataref\tint\ty\n");
    EXPECT_EQ(
        run("--system xp --datarefs more.txt --console --paused", "plugins\nget my/dataref\n"), 0);
    EXPECT_THAT(output, StartsWith("plugins 1 one enabled; 2 two enabled\nmy/dataref = 0\n"));
    EXPECT_THAT(folder.Read("xp/Log.txt"), StartsWith("neighbour: start\nstart\n"));
    EXPECT_FALSE(folder.Has("Log.txt"));
    EXPECT_EQ(run("--system xp --log here.txt --duration 0"), 0);
    EXPECT_THAT(folder.Read("here.txt"), StartsWith("neighbour: start\n"));
    folder.Write("a.scenario", "frames 2\nexpect sim/cockpit2/controls/flap_ratio == 0.5\n");
    folder.Write("in.csv", "sim/cockpit2/controls/flap_ratio\n0.25\n0.5\n");
    EXPECT_EQ(run("--system xp --paused --script a.scenario --junit report.xml --replay in.csv "
                  "--record out.csv sim/cockpit2/controls/flap_ratio"),
              0);
    EXPECT_EQ(errors, "");
    EXPECT_THAT(folder.Read("report.xml"), HasSubstr("failures=\"0\""));
    EXPECT_THAT(folder.Read("out.csv"), EndsWith(",0.5\n"));
    EXPECT_EQ(run("--system xp --script -", "quit 6"), 6);
    EXPECT_EQ(run("--check --system xp"), 0);
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 2);
}

TEST_F(HeadlessSimEndTest, AFolderThatIsNotASystemIsOneLineAndStatus1) {
    EXPECT_EQ(run("--system ."), 1);
    EXPECT_EQ(errors,
              "headless-sim: .: not laid out like the simulator's folder: it has no "
              "Resources/plugins\n");
    std::filesystem::create_directories(folder.Path("Resources/plugins"));
    EXPECT_EQ(run("--system ."), 1);
    EXPECT_EQ(errors, "headless-sim: ./Resources/plugins: the folder has no plugins\n");
}

TEST_F(HeadlessSimEndTest, APluginThatRefusesToStartIsOneLineAndStatus1) {
    EXPECT_EQ(run(REFUSING_PLUGIN), 1);
    EXPECT_EQ(errors, "headless-sim: " REFUSING_PLUGIN ": the plugin refused to start\n");
}

TEST_F(HeadlessSimEndTest, BadInputFilesAreOneLineAndStatus2) {
    EXPECT_EQ(run(FAKE_PLUGIN " --datarefs none.txt"), 2);
    EXPECT_EQ(errors, "headless-sim: none.txt: cannot be opened: No such file or directory\n");
    folder.Write("bad.txt", "\n\nsim/b\tlong\ty\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --datarefs bad.txt"), 2);
    EXPECT_EQ(errors, "headless-sim: bad.txt:3: unknown type \"long\"\n");
    folder.Write("some.txt", "sim/a\tint\ty\n\nsim/b\tlong\ty\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0 --datarefs some.txt"), 0);
    EXPECT_EQ(errors, "headless-sim: warning: some.txt:3: unknown type \"long\"\n");
    folder.Write("commands.txt", "word\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --commands commands.txt"), 2);
    EXPECT_EQ(errors, "headless-sim: commands.txt:1: \"word\" is not a command name\n");
}

TEST_F(HeadlessSimEndTest, WrongUsageIsOneLineAndStatus2) {
    for (const char* arguments : {"", FAKE_PLUGIN " --hz 0", FAKE_PLUGIN " --hz many",
                                  FAKE_PLUGIN " --duration -1", FAKE_PLUGIN " --none"}) {
        EXPECT_EQ(run(arguments), 2) << arguments;
        EXPECT_THAT(errors, StartsWith("headless-sim: ")) << arguments;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << arguments;
    }
}

TEST_F(HeadlessSimEndTest, SaysWhatIsWrongWithANumber) {
    for (const std::string option : {"--hz", "--duration", "--ground", "--watchdog", "--budget-us",
                                     "--replay a.fdr --speed", "--world"}) {
        const std::string name = option.substr(option.rfind("--"));
        EXPECT_EQ(run(FAKE_PLUGIN " " + option + " nan"), 2) << option;
        EXPECT_THAT(errors, StartsWith("headless-sim: " + name + ": nan is not ")) << option;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
    EXPECT_EQ(run(FAKE_PLUGIN " --hz 0"), 2);
    EXPECT_EQ(errors, "headless-sim: --hz: 0 is not a number from 0.1 to 100000\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --world 9"), 2);
    EXPECT_EQ(errors, "headless-sim: --world: 9 is not a number from 10 to 12\n");
}

// As a script does whose variable is not set.
TEST_F(HeadlessSimEndTest, RefusesAnEmptyValue) {
    for (const std::string option : {"--system", "--datarefs", "--commands", "--script",
                                     "--script a --junit", "--replay", "--log", "--freeze"}) {
        EXPECT_EQ(run(FAKE_PLUGIN " --duration 0 " + option + " ''"), 2) << option;
        EXPECT_EQ(errors,
                  "headless-sim: " + option.substr(option.rfind("--")) + ": the value is empty\n");
    }
    EXPECT_EQ(run("''"), 2);
    EXPECT_EQ(errors, "headless-sim: PLUGIN: the value is empty\n");
}

TEST_F(HeadlessSimEndTest, AFullDiskIsOneLineAndStatus2) {
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0 --stats --json > /dev/full"), 2);
    EXPECT_EQ(errors, "headless-sim: standard output cannot be written\n");
    EXPECT_EQ(run("--list-functions > /dev/full"), 2);
    EXPECT_EQ(errors, "headless-sim: standard output cannot be written\n");
    folder.Write("a.scenario", "expect sim/time/paused == 0\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --paused --script a.scenario --junit /dev/full"), 2);
    EXPECT_EQ(errors,
              "headless-sim: /dev/full: cannot write the report: No space left on device\n");
    EXPECT_THAT(log(), EndsWith("disable\nstop\n"));
}

// Otherwise the log takes its place, and gets the summary.
TEST_F(HeadlessSimEndTest, PrintsNothingIntoTheLogIfStandardOutputIsClosed) {
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0 >&-"), 2);
    EXPECT_THAT(log(), StartsWith("start\n"));
    EXPECT_THAT(log(), EndsWith("disable\nstop\n"));
}

TEST_F(HeadlessSimEndTest, NamesTheUnknownOption) {
    EXPECT_EQ(run("--dration 5 " FAKE_PLUGIN), 2);
    EXPECT_EQ(errors, "headless-sim: unknown option --dration; see headless-sim --help\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --log=x -z 5"), 2);
    EXPECT_EQ(errors, "headless-sim: unknown option -z; see headless-sim --help\n");
    EXPECT_EQ(run("--hz 60"), 2);
    EXPECT_EQ(errors, "headless-sim: no plugin is given; see headless-sim --help\n");
}
