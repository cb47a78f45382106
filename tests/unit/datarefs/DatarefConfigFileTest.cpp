#include <filesystem>
#include <locale>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "datarefs/DatarefProvider.h"
#include "support/GroupedDigits.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DatarefConfigFileTest : public DatarefProviderFixture {
protected:
    // Parses a file with this content; the file must stay unchanged.
    void parse(const std::string& content) {
        directory.Write(kConfigFile, content);
        provider->ParseConfig();
        EXPECT_EQ(directory.Read(kConfigFile), content);
    }

    void registerOwnDatarefs() {
        provider->RegisterInt("kyr/autopilot_external_control");
        provider->RegisterInt("kyr/autopilot_trigger_disable");
        provider->RegisterIntArray(4, "kyr/external_forcescalefactor_active");
        provider->RegisterIntArray(4, "kyr/external_forcescalefactor_value");
    }

    int sizeOf(std::uintptr_t number) {
        return provider->GetIntArray(refcon(number), nullptr, 0, 0);
    }
};

TEST_F(DatarefConfigFileTest, DoesNothingWhenThereIsNoFile) {
    provider->ParseConfig();
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has(kConfigFile));
}

TEST_F(DatarefConfigFileTest, DoesNothingWhenThereIsNoFolder) {
    std::filesystem::remove_all(directory.Path() / "Resources");
    provider->ParseConfig();
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has("Resources"));
}

TEST_F(DatarefConfigFileTest, ListsTheOwnDatarefsAfterTheFirstStart) {
    provider->ParseConfig();
    registerOwnDatarefs();
    EXPECT_EQ(directory.Read(kConfigFile),
              "\n"
              "kyr/autopilot_external_control int\n"
              "kyr/autopilot_trigger_disable int\n"
              "kyr/external_forcescalefactor_active int_array 4\n"
              "kyr/external_forcescalefactor_value int_array 4");
}

TEST_F(DatarefConfigFileTest, AppendsNothingAtTheSecondStart) {
    provider->ParseConfig();
    registerOwnDatarefs();
    const std::string afterTheFirst = directory.Read(kConfigFile);
    restart();
    provider->ParseConfig();
    EXPECT_THAT(registrations(), ElementsAre("kyr/autopilot_external_control, 1, writable",
                                             "kyr/autopilot_trigger_disable, 1, writable",
                                             "kyr/external_forcescalefactor_active, 16, writable",
                                             "kyr/external_forcescalefactor_value, 16, writable"));
    registerOwnDatarefs();
    EXPECT_EQ(directory.Read(kConfigFile), afterTheFirst);
}

TEST_F(DatarefConfigFileTest, RegistersEveryTypeInTheOrderOfTheFile) {
    parse(
        "kyr/f int\n"
        "kyr/e float\n"
        "kyr/d double\n"
        "kyr/c int_array 3\n"
        "kyr/b float_array 5\n"
        "kyr/a byte_array 256\n");
    EXPECT_THAT(registrations(),
                ElementsAre("kyr/f, 1, writable", "kyr/e, 2, writable", "kyr/d, 4, writable",
                            "kyr/c, 16, writable", "kyr/b, 8, writable", "kyr/a, 32, writable"));
    accessed.clear();
    simulator.Datarefs().GetInt("kyr/f");
    simulator.Datarefs().GetFloat("kyr/e");
    simulator.Datarefs().GetDouble("kyr/d");
    EXPECT_THAT(accessed, ElementsAre("readInt 1", "readFloat 2", "readDouble 3"));
    EXPECT_EQ(sizeOf(4), 3);
    EXPECT_EQ(provider->GetFloatArray(refcon(5), nullptr, 0, 0), 5);
}

TEST_F(DatarefConfigFileTest, TakesANameAsItStands) {
    parse("my.own/D\xC3\xA4taref[0] int\nx float\n");
    EXPECT_THAT(registrations(),
                ElementsAre("my.own/D\xC3\xA4taref[0], 1, writable", "x, 2, writable"));
}

TEST_F(DatarefConfigFileTest, ReadsALastLineWithoutALineFeed) {
    parse("kyr/a int\nkyr/b float");
    EXPECT_THAT(registrations(), ElementsAre("kyr/a, 1, writable", "kyr/b, 2, writable"));
}

TEST_F(DatarefConfigFileTest, SeparatesFieldsByAnyRunOfSpaces) {
    parse("   kyr/a     int_array   7\nkyr/b  float   \n");
    EXPECT_THAT(registrations(), ElementsAre("kyr/a, 16, writable", "kyr/b, 2, writable"));
    EXPECT_EQ(sizeOf(1), 7);
}

TEST_F(DatarefConfigFileTest, ReadsWhatStandsBeforeAComment) {
    parse(
        "kyr/cockpit_light float # a lamp\n"
        "kyr/lamps int_array 8 # eight lamps\n"
        "kyr/a int#no space before\n"
        "kyr/b int_array 3#three\n");
    EXPECT_THAT(registrations(),
                ElementsAre("kyr/cockpit_light, 2, writable", "kyr/lamps, 16, writable",
                            "kyr/a, 1, writable", "kyr/b, 16, writable"));
    EXPECT_EQ(sizeOf(2), 8);
    EXPECT_EQ(sizeOf(4), 3);
}

TEST_F(DatarefConfigFileTest, RegistersNothingForALineThatBeginsWithTheCommentSign) {
    parse("#kyr/a int\n# kyr/b int\n#\n");
    EXPECT_THAT(registrations(), IsEmpty());
}

TEST_F(DatarefConfigFileTest, CutsANameAtTheCommentSignAndIgnoresTheRest) {
    parse("x#y float\n");
    EXPECT_THAT(registrations(), IsEmpty());
}

TEST_F(DatarefConfigFileTest, IgnoresWhatFollowsTheFieldsOfAType) {
    parse("kyr/a int 5 more\nkyr/b double x\nkyr/c int_array 2 3 more\n");
    EXPECT_THAT(registrations(),
                ElementsAre("kyr/a, 1, writable", "kyr/b, 4, writable", "kyr/c, 16, writable"));
    EXPECT_EQ(sizeOf(3), 2);
}

// A scalar's type word then ends with the carriage return; a size stops before it.
TEST_F(DatarefConfigFileTest, IgnoresAScalarBeforeACarriageReturnAndAcceptsAnArray) {
    parse("kyr/a int\r\nkyr/b int_array 5\r\nkyr/c int\n");
    EXPECT_THAT(registrations(), ElementsAre("kyr/b, 16, writable", "kyr/c, 1, writable"));
    EXPECT_EQ(sizeOf(1), 5);
}

TEST_F(DatarefConfigFileTest, IgnoresFieldsSeparatedByATab) {
    parse("kyr/a\tint\nkyr/b\tint_array\t4\nkyr/c int_array\t4\n");
    EXPECT_THAT(registrations(), IsEmpty());
}

TEST_F(DatarefConfigFileTest, TakesATabAsPartOfAField) {
    parse("kyr/a\tb int\nkyr/c int\t\n");
    EXPECT_THAT(registrations(), ElementsAre("kyr/a\tb, 1, writable"));
}

struct LineCase {
    std::string name;
    std::string line;
};

void PrintTo(const LineCase& row, std::ostream* out) {
    *out << row.name;
}

class DatarefConfigIgnoredLineTest : public DatarefProviderFixture,
                                     public testing::WithParamInterface<LineCase> {};

TEST_P(DatarefConfigIgnoredLineTest, RegistersNothingAndReadsOn) {
    const std::string content = GetParam().line + "\nkyr/next int\n";
    directory.Write(kConfigFile, content);
    provider->ParseConfig();
    EXPECT_THAT(registrations(), ElementsAre("kyr/next, 1, writable"));
    EXPECT_EQ(directory.Read(kConfigFile), content);
    EXPECT_THAT(logger.messages, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, DatarefConfigIgnoredLineTest,
    testing::Values(LineCase{"Empty", ""}, LineCase{"Spaces", "    "},
                    LineCase{"OnlyAName", "kyr/a"}, LineCase{"ANameAndSpaces", "kyr/a   "},
                    LineCase{"AnUnknownType", "kyr/a long"},
                    LineCase{"AnUnknownArrayType", "kyr/a double_array 4"},
                    LineCase{"TheTypeInCapitals", "kyr/a INT"},
                    LineCase{"TheTypeCapitalised", "kyr/a Float"},
                    LineCase{"ATypeThatGoesOn", "kyr/a intx"},
                    LineCase{"AnIntArrayWithoutASize", "kyr/a int_array"},
                    LineCase{"AFloatArrayWithoutASize", "kyr/a float_array"},
                    LineCase{"AByteArrayWithoutASize", "kyr/a byte_array"},
                    LineCase{"AnArrayWithASpaceForASize", "kyr/a int_array "},
                    LineCase{"AnArrayWithACommentForASize", "kyr/a int_array # 5"},
                    LineCase{"ASizeOfZero", "kyr/a int_array 0"},
                    LineCase{"ANegativeSize", "kyr/a int_array -3"},
                    LineCase{"ANegativeFloatArraySize", "kyr/a float_array -1"},
                    LineCase{"AByteArraySizeOfZero", "kyr/a byte_array 0"},
                    LineCase{"ASizeInHexDigits", "kyr/a int_array 0x10"},
                    LineCase{"ASizeThatIsNotANumber", "kyr/a int_array many"},
                    LineCase{"ASizeThatIsASign", "kyr/a int_array -"},
                    LineCase{"ASizeBeyondALong", "kyr/a int_array 99999999999999999999999"},
                    LineCase{"ASizeBeyondAnInt", "kyr/a int_array 99999999999"},
                    LineCase{"ASizeJustBeyondAnInt", "kyr/a float_array 2147483648"},
                    LineCase{"ASizeFarBelowAnInt", "kyr/a byte_array -99999999999"}),
    [](const auto& row) { return row.param.name; });

struct SizeCase {
    std::string name;
    std::string text;
    int size;
};

void PrintTo(const SizeCase& row, std::ostream* out) {
    *out << row.name;
}

class DatarefConfigSizeTest : public DatarefProviderFixture,
                              public testing::WithParamInterface<SizeCase> {};

TEST_P(DatarefConfigSizeTest, IsReadUpToTheFirstNonDigit) {
    directory.Write(kConfigFile, "kyr/a int_array " + GetParam().text + "\n");
    provider->ParseConfig();
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 0, 0), GetParam().size);
}

INSTANTIATE_TEST_SUITE_P(AllForms, DatarefConfigSizeTest,
                         testing::Values(SizeCase{"Plain", "8", 8}, SizeCase{"One", "1", 1},
                                         SizeCase{"LettersAfterTheDigits", "8abc", 8},
                                         SizeCase{"AFraction", "3.5", 3},
                                         SizeCase{"LeadingZeros", "007", 7},
                                         SizeCase{"APlusSign", "+5", 5},
                                         SizeCase{"LeadingWhiteSpace", "\t6", 6}),
                         [](const auto& row) { return row.param.name; });

TEST_F(DatarefConfigFileTest, LetsTheFirstLineOfANameWin) {
    parse("kyr/a int\nkyr/a float\nkyr/a int\nkyr/b int_array 2\nkyr/b int_array 9\n");
    EXPECT_THAT(registrations(), ElementsAre("kyr/a, 1, writable", "kyr/b, 16, writable"));
    EXPECT_EQ(sizeOf(2), 2);
}

TEST_F(DatarefConfigFileTest, LetsTheFileWinOverATypeThatThePluginUses) {
    parse("kyr/autopilot_trigger_disable float\n");
    EXPECT_EQ(provider->RegisterInt("kyr/autopilot_trigger_disable"), nullptr);
    EXPECT_THAT(registrations(), ElementsAre("kyr/autopilot_trigger_disable, 2, writable"));
    EXPECT_EQ(directory.Read(kConfigFile), "kyr/autopilot_trigger_disable float\n");
}

TEST_F(DatarefConfigFileTest, KeepsALineWhoseDatarefTheSimulatorRefuses) {
    simulator.Datarefs().RefuseRegistration("kyr/a");
    parse("kyr/a int\nkyr/b int\n");
    EXPECT_EQ(simulator.Datarefs().Lookup("kyr/a"), nullptr);
    EXPECT_NE(simulator.Datarefs().Lookup("kyr/b"), nullptr);
}

TEST_F(DatarefConfigFileTest, AppendsToWhatTheUserHasWritten) {
    directory.Write(kConfigFile, "# mine\nkyr/a int\nnonsense\n");
    provider->ParseConfig();
    provider->RegisterFloatArray(12, "kyr/b");
    EXPECT_EQ(directory.Read(kConfigFile), "# mine\nkyr/a int\nnonsense\n\nkyr/b float_array 12");
}

TEST_F(DatarefConfigFileTest, DeclaresADatarefWhoseLineWasIgnored) {
    directory.Write(kConfigFile, "kyr/a int_array 0\n");
    provider->ParseConfig();
    provider->RegisterIntArray(4, "kyr/a");
    EXPECT_EQ(directory.Read(kConfigFile), "kyr/a int_array 0\n\nkyr/a int_array 4");
}

TEST_F(DatarefConfigFileTest, ForgetsTheNamesOfTheFormerFileWhenItReadsAgain) {
    parse("kyr/a int\n");
    parse("");
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int");
}

TEST_F(DatarefConfigFileTest, KeepsTheNamesWhenTheFileCannotBeReadAgain) {
    parse("kyr/a int\n");
    std::filesystem::remove(directory.Path() / kConfigFile);
    provider->ParseConfig();
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_FALSE(directory.Has(kConfigFile));
}

TEST_F(DatarefConfigFileTest, WritesNoSizeForAScalarWhateverItIsGiven) {
    provider->ensureDatarefInConfig("kyr/a", "double", 4);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a double");
}

TEST_F(DatarefConfigFileTest, DeclaresANameOnce) {
    provider->ensureDatarefInConfig("kyr/a", "byte_array", 256);
    provider->ensureDatarefInConfig("kyr/a", "byte_array", 256);
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a byte_array 256");
}

TEST_F(DatarefConfigFileTest, TriesAgainToDeclareANameThatItCouldNotWrite) {
    std::filesystem::remove_all(directory.Path() / "Resources");
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_FALSE(directory.Has("Resources"));
    directory.MakePluginsFolder();
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int");
}

TEST_F(DatarefConfigFileTest, WritesTheSizeWithoutTheGroupsOfALocale) {
    const std::locale former = std::locale::global(std::locale(std::locale(), new GroupedDigits));
    provider->ensureDatarefInConfig("kyr/a", "int_array", 65536);
    std::locale::global(former);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int_array 65536");
}

TEST_F(DatarefConfigFileTest, HandlesOneLineByItself) {
    provider->parseConfigLine("kyr/a float # one line");
    provider->parseConfigLine("");
    EXPECT_THAT(registrations(), ElementsAre("kyr/a, 2, writable"));
    EXPECT_FALSE(directory.Has(kConfigFile)) << "a name that was read is known to stand there";
}

TEST_F(DatarefConfigFileTest, SplitsAtRunsOfTheDelimiter) {
    EXPECT_THAT(provider->splitString("a b", ' '), ElementsAre("a", "b"));
    EXPECT_THAT(provider->splitString("a  b", ' '), ElementsAre("a", "b"));
    EXPECT_THAT(provider->splitString("  a b", ' '), ElementsAre("a", "b"));
    EXPECT_THAT(provider->splitString("a,b c", ','), ElementsAre("a", "b c"));
}

TEST_F(DatarefConfigFileTest, SplitsOffAnEmptyLastTokenAfterADelimiter) {
    EXPECT_THAT(provider->splitString("a b ", ' '), ElementsAre("a", "b", ""));
    EXPECT_THAT(provider->splitString("a b   ", ' '), ElementsAre("a", "b", ""));
    EXPECT_THAT(provider->splitString("   ", ' '), ElementsAre(""));
    EXPECT_THAT(provider->splitString("", ' '), ElementsAre(""));
}

TEST(HasEndingTest, ComparesTheLastCharacters) {
    EXPECT_TRUE(hasEnding("int_array", "_array"));
    EXPECT_TRUE(hasEnding("_array", "_array"));
    EXPECT_TRUE(hasEnding("int", ""));
    EXPECT_TRUE(hasEnding("", ""));
    EXPECT_FALSE(hasEnding("int", "_array"));
    EXPECT_FALSE(hasEnding("array", "_array"));
    EXPECT_FALSE(hasEnding("int_array ", "_array"));
    EXPECT_FALSE(hasEnding("int_Array", "_array"));
}

} // namespace
