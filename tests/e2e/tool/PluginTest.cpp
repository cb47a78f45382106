// `orvane plugin` in a home folder of its own, with a simulator that flies what it has installed.

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "e2e/ToolRun.h"
#include "support/Deadline.h"
#include "support/PrivateNetwork.h"
#include "support/TarnelMessages.h"
#include "support/TcpPeer.h"
#include "support/TemporaryDirectory.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "X-Plane 12/Resources/plugins/XPlaneOrvane/64/lin.xpl";
constexpr const char* kSettings = "X-Plane 12/Resources/plugins/xplaneorvane_datarefs.cfg";

void replace(std::string& text, const std::string& old, const std::string& replacement) {
    for (std::size_t i = 0; (i = text.find(old, i)) != std::string::npos; i += replacement.size()) {
        text.replace(i, old.size(), replacement);
    }
}

std::string sessionOfThePage() {
    constexpr std::string_view kCommand = "$ orvane plugin status\n";
    const std::string page = contentOf(std::string(DOCS_FOLDER) + "/orvane.md");
    const std::size_t begin = page.find(kCommand) + kCommand.size();
    return page.substr(begin, page.find("firewall", begin) - begin);
}

class PluginTest : public testing::Test {
protected:
    PluginTest() : home(fs::canonical(directory.Path()).string()), simulator(home + "/X-Plane 12") {
        ::setenv("HOME", home.c_str(), 1);
        makeSimulator("X-Plane 12");
        fs::create_directories(".x-plane");
        directory.Write(".x-plane/x-plane_install_12.txt", simulator + "/\n");
    }

    void makeSimulator(const std::string& folder) const {
        fs::create_directories(folder + "/Resources/plugins");
        directory.Write(folder + "/X-Plane-x86_64", "");
    }

    // Starts a simulator with the plugins in that folder, and waits for its server.
    void fly() {
        flight = std::make_unique<ToolRun>(
            std::vector<std::string>{"--system", "X-Plane 12", "--hz", "200"},
            ToolSetting{.program = HEADLESS_SIM});
        ASSERT_TRUE(driveUntil([] {}, [] { return runTool({"info"}).exitCode == 0; }));
    }

    // The lines of the status with this subject, without it.
    std::vector<std::string> status(const std::string& subject) const {
        const std::string begin = subject + std::string(11 - subject.size(), ' ');
        const ToolResult result = runTool({"plugin", "status"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::vector<std::string> found;
        for (const std::string& line : linesOf(result.out)) {
            if (line.starts_with(begin)) {
                found.push_back(line.substr(begin.size()));
            }
        }
        return found;
    }

    // What status prints in the home of the page, up to the port.
    std::string asOnThePage(std::string text) const {
        replace(text, home, "/home/me");
        const std::size_t owner = text.find("headless-sim, process ");
        text.replace(owner, text.find('\n', owner) - owner,
                     "X-Plane-x86_64, process 4711, of the user me");
        const std::size_t date = text.find("XPlaneOrvane 2") + 13;
        text.replace(date, text.find(" WARNING@") - date, "2026-3-5 9:7:2");
        return text.substr(0, text.find("firewall"));
    }

    using Lines = std::vector<std::string>;

    const TemporaryDirectory directory;
    const std::string home;
    const std::string simulator;
    std::unique_ptr<ToolRun> flight;
};

TEST_F(PluginTest, InstallsWhatWasBuiltAndSaysHowToUndoIt) {
    directory.Write(kSettings, "kyr/light float\n");
    const std::string library = home + "/" + kLibrary;
    const ToolResult dry = runTool({"plugin", "install", "--dry-run"});
    EXPECT_EQ(dry.exitCode, 0);
    EXPECT_EQ(dry.out, "would copy " + library + "\nwould keep " + home + "/" + kSettings +
                           "\nNothing was changed.\n");
    EXPECT_FALSE(directory.Has(kLibrary));

    const ToolResult real = runTool({"plugin", "install"});
    EXPECT_EQ(real.exitCode, 0);
    EXPECT_EQ(real.err, "");
    EXPECT_EQ(real.out, "copied   " + library + "\nkept     " + home + "/" + kSettings +
                            "\nThe plugin " PROJECT_VERSION " is in " + simulator +
                            ".\nTo undo: orvane plugin remove '" + simulator +
                            "'\nIf the simulator runs, restart it to load the plugin.\n");
    EXPECT_TRUE(directory.Read(kLibrary) == contentOf(PLUGIN));
    EXPECT_EQ(directory.Read(kSettings), "kyr/light float\n");
    EXPECT_NE(runTool({"plugin", "install"}).out.find(", in place of " PROJECT_VERSION ".\n"),
              std::string::npos);
    EXPECT_EQ(runTool({"plugin", "install", "--json", "X-Plane 12", "--dry-run"}).out,
              "{\"simulator\":\"" + simulator + "\",\"action\":\"would copy\",\"file\":\"" +
                  library + "\"}\n{\"simulator\":\"" + simulator +
                  "\",\"action\":\"would keep\",\"file\":\"" + home + "/" + kSettings + "\"}\n");

    EXPECT_EQ(runTool({"plugin", "remove", "X-Plane 12"}).out,
              "removed  " + library + "\nkept     " + home + "/" + kSettings + "\n");
    EXPECT_FALSE(directory.Has("X-Plane 12/Resources/plugins/XPlaneOrvane"));
    const ToolResult again = runTool({"plugin", "remove", "--purge"});
    EXPECT_EQ(again.exitCode, 3);
    EXPECT_EQ(again.err, "orvane: " + simulator + ": the plugin is not installed\n");
    EXPECT_FALSE(directory.Has(kSettings));
}

TEST_F(PluginTest, ShowsWhatFliesAndExplainsTheLog) {
    EXPECT_EQ(status("installed"), Lines{"no"});
    EXPECT_EQ(status("port"), Lines{"nobody on this machine listens on 48000"});
    ASSERT_EQ(runTool({"plugin", "install"}).exitCode, 0);
    fly();
    const TcpPeer client(48000);
    client.Send(tarnelRequest(dataMessage({{9, 1}})));
    const std::string log = home + "/X-Plane 12/Log.txt";
    ASSERT_TRUE(driveUntil([] {}, [&] { return contentOf(log).find("(9)") != std::string::npos; }));

    EXPECT_TRUE(status("port").at(0).starts_with("48000 is taken by headless-sim, process "));
    EXPECT_EQ(asOnThePage(runTool({"plugin", "status"}).out), sessionOfThePage());

    // It is replaced under the simulator, which goes on with what it has loaded.
    ASSERT_EQ(runTool({"plugin", "install"}).exitCode, 0);
    EXPECT_EQ(status("loaded"),
              Lines{home + "/" + kLibrary +
                    ", as it was before it was replaced or removed: restart the simulator"});
    EXPECT_EQ(runTool({"info"}).exitCode, 0);
    flight->Signal(SIGTERM);
    EXPECT_EQ(flight->Wait().exitCode, 0);
}

TEST_F(PluginTest, PrintsTheStatusAsRecords) {
    directory.Write("X-Plane 12/Log.txt",
                    "XPlaneOrvane 2026-3-5 9:7:1 PluginStart\n"
                    "XPlaneOrvane 2026-3-5 9:7:2 Error@TcpServer::Init : bind() : Unknown Socket "
                    "Error Code 98\n");
    const std::string json = runTool({"plugin", "status", "--json"}).out;
    std::vector<std::string> subjects;
    for (const std::string& line : linesOf(json)) {
        subjects.push_back(nlohmann::json::parse(line).at("subject"));
        if (subjects.back() == "log line") {
            const auto record = nlohmann::json::parse(line);
            EXPECT_EQ(record.at("count"), 1);
            EXPECT_EQ(record.at("happened"), "The plugin could not get TCP port 48000.");
            EXPECT_TRUE(record.at("text").get<std::string>().ends_with(
                "Error Code 98 (Address already in use)"))
                << line;
        }
    }
    EXPECT_EQ(subjects, (Lines{"simulator", "installed", "settings", "log", "log line", "verbose",
                               "server", "port", "firewall"}));
    EXPECT_TRUE(runTool({"plugin", "status", "--csv"})
                    .out.starts_with("subject,place,value,text,count,happened,why,to_do\n"
                                     "simulator," +
                                     simulator + "," + simulator + "," + simulator + ",,,,\n"));
}

TEST_F(PluginTest, AsksWhichOfSeveralSimulators) {
    makeSimulator("X-Plane 11");
    directory.Write(".x-plane/x-plane_install_11.txt", home + "/X-Plane 11\n" + home + "/gone\n");
    const std::string note = "orvane: " + home + "/.x-plane/x-plane_install_11.txt: " + home +
                             "/gone: there is no such folder; skipped\n";
    const ToolResult several = runTool({"plugin", "install"});
    EXPECT_EQ(several.exitCode, 1);
    EXPECT_EQ(several.out, "");
    EXPECT_EQ(several.err, note + "orvane: there are several simulators (" + simulator + ", " +
                               home + "/X-Plane 11): give the folder of one, or --all\n");
    EXPECT_EQ(runTool({"plugin", "install", "--all"}).exitCode, 0);
    EXPECT_TRUE(directory.Has(kLibrary));
    EXPECT_TRUE(directory.Has("X-Plane 11/Resources/plugins/XPlaneOrvane/64/lin.xpl"));
    EXPECT_EQ(status("installed"), (Lines{PROJECT_VERSION, PROJECT_VERSION}));
    EXPECT_EQ(runTool({"plugin", "remove", "X-Plane 11"}).exitCode, 0);
    EXPECT_EQ(status("installed"), (Lines{PROJECT_VERSION, "no"}));
}

TEST_F(PluginTest, RefusesWhatIsNotASimulatorOrNotThePlugin) {
    const auto refusal = [](const Lines& arguments) {
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 1) << result.out;
        EXPECT_EQ(result.out, "");
        return result.err;
    };
    fs::create_directories("other/Resources/plugins");
    EXPECT_EQ(refusal({"plugin", "install", ".x-plane"}),
              "orvane: .x-plane is not a simulator: it has no folder Resources/plugins\n");
    EXPECT_EQ(
        refusal({"plugin", "status", "other"}),
        "orvane: other is not a simulator: it has neither X-Plane-x86_64 nor X-Plane (--headless "
        "takes a folder of headless-sim)\n");
    EXPECT_EQ(refusal({"plugin", "install", "--headless"}), "orvane: --headless needs FOLDER\n");
    EXPECT_EQ(refusal({"plugin", "install", "--from", "other"}),
              "orvane: other: neither it nor its folder XPlaneOrvane has the plugin, 64/lin.xpl\n");
    fs::remove_all(".x-plane");
    EXPECT_EQ(refusal({"plugin", "remove"}),
              "orvane: no simulator is listed in ~/.x-plane: give its folder\n");
    EXPECT_EQ(status("simulator"), Lines{"none is listed in ~/.x-plane; give its folder"});
}

// As a script does whose variable is not set: it must not change a simulator that is not named.
TEST_F(PluginTest, RefusesAnEmptyFolder) {
    for (const std::string command : {"install", "remove", "status"}) {
        const ToolResult result = runTool({"plugin", command, ""});
        EXPECT_EQ(result.exitCode, 1) << result.out;
        EXPECT_EQ(result.err, "orvane: FOLDER: the name is empty (see \"orvane plugin " + command +
                                  " --help\")\n");
    }
    EXPECT_EQ(runTool({"plugin", "install", "--from", ""}).err,
              "orvane: --from: the name is empty (see \"orvane plugin install --help\")\n");
    EXPECT_FALSE(directory.Has(kLibrary));
}

TEST_F(PluginTest, NamesADiskThatIsFull) {
    const auto withFullDisk = [&](const std::string& command) {
        return outputOf(
            "unshare --user --map-root-user --mount sh -c 'mount -t tmpfs -o size=64k "
            "none \"X-Plane 12/Resources/plugins\" && " +
            command + "' 2>&1 || true");
    };
    if (withFullDisk("echo mounted") != "mounted\n") {
        GTEST_SKIP() << "this system permits no mounts";
    }
    EXPECT_EQ(withFullDisk(ORVANE_TOOL " plugin install"),
              "orvane: " + home + "/" + kLibrary + ": No space left on device\n");
}

// What the rules of docs/security.md do to other machines, as root in a network of its own.
TEST_F(PluginTest, KnowsWhetherAFirewallClosesThePort) {
    if (::geteuid() != 0) {
        EXPECT_TRUE(status("firewall").at(0).starts_with("not known without root"));
        return;
    }
    if (!isNetworkPrivate()) {
        GTEST_SKIP() << "this system permits no network namespace: rules would close its own ports";
    }
    const std::string nft = "PATH=$PATH:/usr/sbin nft ";
    ASSERT_EQ(outputOf(nft + "list ruleset"), "");
    const std::string page = contentOf(std::string(DOCS_FOLDER) + "/security.md");
    const auto load = [&](const std::string& first) {
        const std::size_t begin = page.find(first);
        directory.Write("rules.nft", page.substr(begin, page.find("```", begin) - begin));
        outputOf(nft + "flush ruleset && " + nft + "-f rules.nft");
    };
    EXPECT_EQ(status("firewall"), Lines{"open: no rule of nft drops connections to it"});
    load("table inet orvane {");
    EXPECT_EQ(status("firewall"),
              Lines{"closed: the rules of nft drop connections to it from other machines"});
    load("table inet orvane_with_one_guest {");
    EXPECT_EQ(status("firewall"),
              Lines{"not known: it depends on more than the port, see \"sudo nft list ruleset\""});
    outputOf(nft + "flush ruleset");
}

// In the order of the page: install before remove.
TEST_F(PluginTest, EveryExampleOfTheHelpWorks) {
    makeSimulator("X-Plane");
    fs::remove_all("X-Plane 12");
    directory.Write(".x-plane/x-plane_install_12.txt", home + "/X-Plane\n");
    fs::create_directories("build/run/Resources/plugins");
    fs::create_directories("Downloads/XPlaneOrvane/64");
    fs::copy_file(PLUGIN, "Downloads/XPlaneOrvane/64/lin.xpl");
    const std::string tool = fs::path(ORVANE_TOOL).parent_path().string();
    int count = 0;
    for (const Lines& command : {Lines{"plugin"}, Lines{"plugin", "install"},
                                 Lines{"plugin", "remove"}, Lines{"plugin", "status"}}) {
        Lines arguments{"help"};
        arguments.insert(arguments.end(), command.begin(), command.end());
        const std::string help = runTool(arguments).out;
        for (const std::string& line : linesOf(help.substr(help.find("Examples:")))) {
            if (line.starts_with("  orvane")) {
                const std::string alone = line.substr(0, line.find(" | "));
                EXPECT_EQ(
                    std::system(("PATH='" + tool + "':$PATH;" + alone + " > /dev/null").c_str()), 0)
                    << line;
                ++count;
            }
        }
    }
    EXPECT_GE(count, 13);
    EXPECT_FALSE(directory.Has("X-Plane/Resources/plugins/XPlaneOrvane"));
}

} // namespace
