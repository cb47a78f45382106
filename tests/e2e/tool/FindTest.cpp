// The lists of datarefs and commands of an installed simulator: orvane find, and the completions.

#include <filesystem>

#include "e2e/tool/ToolTest.h"
#include "support/Text.h"

namespace {

constexpr const char* kDatarefs =
    "2 1115 Thu Jan  1 00:00:00 2026\n"
    "\n"
    "test/int\tint\ty\tboolean\tAn int\n"
    "test/ints\tint[8]\ty\tunits\tEight ints\n"
    "test/far\tfloat[65]\tn\tmeters\tA long array\n"
    "test/away/Lost\tdouble\tn\n"
    "test/away/text\tbyte[40]\tn\tstring\tNot a number: int\n";
constexpr const char* kCommands = "test/once                 A command to run\n";

// A home folder whose simulator has lists of its own.
class Installation {
public:
    explicit Installation(const TemporaryDirectory& folder) : folder(folder) {
        std::filesystem::create_directories(".x-plane");
        std::filesystem::create_directories("X-Plane 12/Resources/plugins");
        folder.Write(".x-plane/x-plane_install_11.txt", "/no/such/simulator\n");
        folder.Write(".x-plane/x-plane_install_12.txt",
                     "/no/such/simulator/\n" + (folder.Path() / "X-Plane 12/").string() + "\n");
        folder.Write("X-Plane 12/X-Plane-x86_64", "");
        Write(kDatarefs, kCommands);
    }

    void Write(const std::string& datarefs, const std::string& commands) const {
        folder.Write("X-Plane 12/Resources/plugins/DataRefs.txt", datarefs);
        folder.Write("X-Plane 12/Resources/plugins/Commands.txt", commands);
    }

    ToolResult Run(const std::vector<std::string>& arguments) const {
        ToolSetting setting;
        setting.environment = {"HOME=" + folder.Path().string()};
        return runTool(arguments, setting);
    }

private:
    const TemporaryDirectory& folder;
};

class FindTest : public testing::Test {
protected:
    TemporaryDirectory directory;
    Installation home{directory};
};

class FindWithServerTest : public ToolTest {
protected:
    Installation home{directory};
};

TEST_F(FindWithServerTest, ShowsPresentValues) {
    simulator->Ask("set test/ints 1,-2,3");
    EXPECT_EQ(home.Run({"find", "INT"}).out,
              "test/int  int, writable  boolean  = 0  An int\n"
              "test/ints  int[8], writable  units  = 1,-2,3,0,0,0,0,0  Eight ints\n"
              "test/away/text  byte[40]  string  Not a number: int\n");
    EXPECT_EQ(home.Run({"find", "test/int?", "--json"}).out,
              "{\"name\":\"test/ints\",\"type\":\"int[8]\",\"writable\":true,\"units\":\"units\","
              "\"description\":\"Eight ints\",\"value\":[1,-2,3,0,0,0,0,0]}\n");
}

TEST_F(FindTest, NeedsNoServer) {
    const ToolResult result = home.Run({"find", "A"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              "test/int  int, writable  boolean  An int\n"
              "test/far  float[65]  meters  A long array\n"
              "test/away/Lost  double\n"
              "test/away/text  byte[40]  string  Not a number: int\n"
              "test/once  command  A command to run\n");
    EXPECT_EQ(home.Run({"find", "run", "--csv"}).out,
              "name,type,writable,units,description,value\n"
              "test/once,command,,,A command to run,\n");
}

TEST_F(FindTest, MatchesWholeNamesWithAGlob) {
    EXPECT_EQ(home.Run({"find", "TEST/*", "--names"}).out,
              "test/int\ntest/ints\ntest/far\ntest/away/Lost\ntest/away/text\ntest/once\n");
    EXPECT_EQ(home.Run({"find", "*/l[a-z]st", "--names"}).out, "test/away/Lost\n");
    const ToolResult none = home.Run({"find", "est/int?", "--names"});
    EXPECT_EQ(none.exitCode, 3);
    EXPECT_EQ(none.err, "orvane: nothing matches \"est/int?\"\n");
}

TEST_F(FindTest, ReadsTheFilesThatAreGiven) {
    directory.Write("mine.txt", "my/lamp\tint\ty\nbroken\n");
    const ToolResult mine = home.Run({"find", "m", "--datarefs", "mine.txt"});
    EXPECT_EQ(mine.out, "my/lamp  int, writable\n");
    EXPECT_EQ(mine.err, "mine.txt:2: name, type and writable are expected, separated by tabs\n");
    directory.Write("commands.txt", "my/press  Press\n");
    EXPECT_EQ(home.Run({"find", "m", "--commands", "commands.txt"}).out,
              "my/press  command  Press\n");
    const ToolResult missing = home.Run({"find", "m", "--datarefs", "no.txt"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "orvane: no.txt: cannot be opened: No such file or directory\n");
}

TEST_F(FindTest, SaysThatNoSimulatorIsInstalled) {
    std::filesystem::remove_all(".x-plane");
    const ToolResult result = home.Run({"find", "m"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "orvane: no installed simulator has lists of names; give one with --datarefs or "
              "--commands\n");
}

TEST_F(FindTest, NamesAreCompletedPartByPart) {
    EXPECT_EQ(home.Run({"__complete", "get", ""}).out, "test/\n");
    EXPECT_EQ(home.Run({"__complete", "watch", "test/"}).out,
              "test/away/\ntest/far\tA long array\ntest/int\tAn int\ntest/ints\tEight ints\n");
    EXPECT_EQ(home.Run({"__complete", "record", "-n", "5", "test/away/L"}).out, "test/away/Lost\n");
    EXPECT_EQ(home.Run({"__complete", "set", "test/int"}).out,
              "test/int=\tAn int\ntest/ints=\tEight ints\n");
    EXPECT_EQ(home.Run({"__complete", "command", "hold", "test/o"}).out,
              "test/once\tA command to run\n");
    EXPECT_EQ(home.Run({"__complete", "--host", "a"}).out, "auto\n");
    std::filesystem::remove_all(".x-plane");
    EXPECT_EQ(home.Run({"__complete", "get", "t"}).out, "");
}

// As many as the simulator has; it takes some 20 ms on a quiet machine.
TEST_F(FindTest, CompletesAmongSixThousandNames) {
    std::string datarefs;
    for (int i = 0; i < 6'000; ++i) {
        datarefs += "sim/group" + std::to_string(i % 60) + "/name" + std::to_string(i) +
                    "\tfloat\ty\tunits\tA name with a description of the usual length\n";
    }
    home.Write(datarefs, kCommands);
    EXPECT_EQ(linesOf(home.Run({"__complete", "get", "sim/"}).out).size(), 60U);
    EXPECT_EQ(linesOf(home.Run({"__complete", "get", "sim/group7/"}).out).size(), 100U);
}

} // namespace
