#include <array>
#include <climits>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "datarefs/DatarefProvider.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DatarefProviderTest : public DatarefProviderFixture {
protected:
    std::vector<int> intArray(std::uintptr_t number) {
        std::vector<int> values(
            static_cast<std::size_t>(provider->GetIntArray(refcon(number), nullptr, 0, 0)), -7);
        provider->GetIntArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }
    std::vector<float> floatArray(std::uintptr_t number) {
        std::vector<float> values(
            static_cast<std::size_t>(provider->GetFloatArray(refcon(number), nullptr, 0, 0)),
            -7.0F);
        provider->GetFloatArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }
};

TEST_F(DatarefProviderTest, TouchesNeitherTheFileNorTheSimulatorWhenItIsMade) {
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has(kConfigFile));
}

TEST_F(DatarefProviderTest, LeavesItsDatarefsWithTheSimulatorWhenItGoes) {
    provider->RegisterInt("kyr/a");
    provider.reset();
    EXPECT_NE(simulator.Datarefs().Lookup("kyr/a"), nullptr);
    EXPECT_THAT(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor"), IsEmpty());
}

struct RegistrationCase {
    std::string name;
    std::function<XPLMDataRef(IDatarefProvider&, const std::string&)> registerIt;
    std::string request;
    std::string line;
    std::vector<std::string> accessors;
};

void PrintTo(const RegistrationCase& row, std::ostream* out) {
    *out << row.name;
}

class DatarefRegistrationTest : public DatarefProviderFixture,
                                public testing::WithParamInterface<RegistrationCase> {
protected:
    XPLMDataRef registerIt(const std::string& name) {
        return GetParam().registerIt(*provider, name);
    }
};

TEST_P(DatarefRegistrationTest, AsksTheSimulatorForAWritableDatarefOfItsType) {
    const XPLMDataRef handle = registerIt("kyr/a");
    EXPECT_NE(handle, nullptr);
    EXPECT_EQ(handle, simulator.Datarefs().Lookup("kyr/a"));
    EXPECT_THAT(registrations(), ElementsAre(GetParam().request));
}

TEST_P(DatarefRegistrationTest, GivesThePairOfAccessorsOfItsTypeAndNoOtherWithOneRefcon) {
    registerIt("kyr/a");
    accessed.clear();
    headless::IDatarefValue& value = simulator.Datarefs().Lookup("kyr/a")->Value();
    int ints[1] = {};
    float floats[1] = {};
    char bytes[1] = {};
    value.GetInt();
    value.SetInt(0);
    value.GetFloat();
    value.SetFloat(0.0F);
    value.GetDouble();
    value.SetDouble(0.0);
    value.GetInts(ints, 0, 1);
    value.SetInts(ints, 0, 1);
    value.GetFloats(floats, 0, 1);
    value.SetFloats(floats, 0, 1);
    value.GetBytes(bytes, 0, 1);
    value.SetBytes(bytes, 0, 1);
    EXPECT_EQ(accessed, GetParam().accessors);
}

TEST_P(DatarefRegistrationTest, DeclaresTheDatarefInTheFile) {
    registerIt("kyr/a");
    EXPECT_EQ(directory.Read(kConfigFile), GetParam().line);
}

TEST_P(DatarefRegistrationTest, IsNullForANameThatIsRegisteredAlready) {
    EXPECT_NE(registerIt("kyr/a"), nullptr);
    EXPECT_EQ(registerIt("kyr/a"), nullptr);
    EXPECT_THAT(registrations(), ElementsAre(GetParam().request));
    EXPECT_EQ(directory.Read(kConfigFile), GetParam().line);
}

TEST_P(DatarefRegistrationTest, LeavesNoTraceWhenTheSimulatorRefuses) {
    simulator.Datarefs().RefuseAllRegistrations(true);
    EXPECT_EQ(registerIt("kyr/a"), nullptr);
    EXPECT_FALSE(directory.Has(kConfigFile));

    simulator.Datarefs().RefuseAllRegistrations(false);
    EXPECT_NE(registerIt("kyr/a"), nullptr);
    accessed.clear();
    simulator.Datarefs().Lookup("kyr/a")->Value().GetInt();
    simulator.Datarefs().Lookup("kyr/a")->Value().GetFloat();
    simulator.Datarefs().Lookup("kyr/a")->Value().GetDouble();
    simulator.Datarefs().Lookup("kyr/a")->Value().GetInts(nullptr, 0, 0);
    simulator.Datarefs().Lookup("kyr/a")->Value().GetFloats(nullptr, 0, 0);
    simulator.Datarefs().Lookup("kyr/a")->Value().GetBytes(nullptr, 0, 0);
    EXPECT_THAT(accessed, ElementsAre(GetParam().accessors[0])) << "the refcon is 1 still";
}

TEST_P(DatarefRegistrationTest, WorksWithoutAFileToDeclareItIn) {
    std::filesystem::remove_all(directory.Path() / "Resources");
    EXPECT_NE(registerIt("kyr/a"), nullptr);
    EXPECT_FALSE(directory.Has("Resources"));
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, DatarefRegistrationTest,
    testing::Values(
        RegistrationCase{"Int",
                         [](auto& provider, auto& name) { return provider.RegisterInt(name); },
                         "kyr/a, 1, writable",
                         "\nkyr/a int",
                         {"readInt 1", "writeInt 1"}},
        RegistrationCase{"Float",
                         [](auto& provider, auto& name) { return provider.RegisterFloat(name); },
                         "kyr/a, 2, writable",
                         "\nkyr/a float",
                         {"readFloat 1", "writeFloat 1"}},
        RegistrationCase{"Double",
                         [](auto& provider, auto& name) { return provider.RegisterDouble(name); },
                         "kyr/a, 4, writable",
                         "\nkyr/a double",
                         {"readDouble 1", "writeDouble 1"}},
        RegistrationCase{
            "IntArray",
            [](auto& provider, auto& name) { return provider.RegisterIntArray(4, name); },
            "kyr/a, 16, writable",
            "\nkyr/a int_array 4",
            {"readInts 1", "writeInts 1"}},
        RegistrationCase{
            "FloatArray",
            [](auto& provider, auto& name) { return provider.RegisterFloatArray(5, name); },
            "kyr/a, 8, writable",
            "\nkyr/a float_array 5",
            {"readFloats 1", "writeFloats 1"}},
        RegistrationCase{
            "ByteArray",
            [](auto& provider, auto& name) { return provider.RegisterByteArray(256, name); },
            "kyr/a, 32, writable",
            "\nkyr/a byte_array 256",
            {"readBytes 1", "writeBytes 1"}}),
    [](const auto& row) { return row.param.name; });

TEST_F(DatarefProviderTest, CountsRefconsFromOneInOrderOfRegistrationAcrossAllTypes) {
    provider->RegisterFloat("kyr/d");
    provider->RegisterIntArray(3, "kyr/c");
    provider->RegisterInt("kyr/b");
    provider->RegisterFloatArray(2, "kyr/a");
    accessed.clear();
    simulator.Datarefs().GetFloat("kyr/d");
    simulator.Datarefs().Lookup("kyr/c")->Value().GetInts(nullptr, 0, 0);
    simulator.Datarefs().GetInt("kyr/b");
    simulator.Datarefs().Lookup("kyr/a")->Value().GetFloats(nullptr, 0, 0);
    EXPECT_THAT(accessed, ElementsAre("readFloat 1", "readInts 2", "readInt 3", "readFloats 4"));
}

TEST_F(DatarefProviderTest, CountsARepeatedRegistrationNeitherAsARefconNorAsALine) {
    EXPECT_NE(provider->RegisterInt("kyr/a"), nullptr);
    EXPECT_EQ(provider->RegisterInt("kyr/a"), nullptr);
    EXPECT_NE(provider->RegisterInt("kyr/b"), nullptr);
    accessed.clear();
    simulator.Datarefs().GetInt("kyr/b");
    EXPECT_THAT(accessed, ElementsAre("readInt 2"));
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int\nkyr/b int");
}

TEST_F(DatarefProviderTest, KeepsTheFirstTypeOfANameThatIsRegisteredAsAnother) {
    EXPECT_NE(provider->RegisterInt("kyr/a"), nullptr);
    EXPECT_EQ(provider->RegisterFloat("kyr/a"), nullptr);
    EXPECT_EQ(provider->RegisterIntArray(4, "kyr/a"), nullptr);
    EXPECT_THAT(registrations(), ElementsAre("kyr/a, 1, writable"));
    simulator.Datarefs().SetInt("kyr/a", 5);
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/a"), 5);
}

TEST_F(DatarefProviderTest, KeepsTheFirstSizeOfANameThatIsRegisteredWithAnother) {
    EXPECT_NE(provider->RegisterIntArray(4, "kyr/a"), nullptr);
    EXPECT_EQ(provider->RegisterIntArray(8, "kyr/a"), nullptr);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 0, 0), 4);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int_array 4");
}

TEST_F(DatarefProviderTest, IsRefusedANameThatAnotherPluginOwns) {
    simulator.Datarefs().Define({.name = "kyr/a", .types = xplmType_Int});
    EXPECT_EQ(provider->RegisterInt("kyr/a"), nullptr);
    EXPECT_FALSE(directory.Has(kConfigFile));
}

TEST_F(DatarefProviderTest, AcceptsAnArrayOfNoElements) {
    EXPECT_NE(provider->RegisterIntArray(0, "kyr/a"), nullptr);
    EXPECT_NE(provider->RegisterFloatArray(0, "kyr/b"), nullptr);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 0, 0), 0);
    int value = -7;
    EXPECT_EQ(provider->GetIntArray(refcon(1), &value, 0, 1), 0);
    EXPECT_EQ(value, -7);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), nullptr, 0, 0), 0);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int_array 0\nkyr/b float_array 0");
}

TEST_F(DatarefProviderTest, LeavesNoTraceOfAnArrayThatCannotBeStored) {
    const auto minusOne = static_cast<std::size_t>(-1);
    EXPECT_THROW(provider->RegisterIntArray(minusOne, "kyr/a"), std::length_error);
    EXPECT_THROW(provider->RegisterFloatArray(minusOne, "kyr/a"), std::length_error);
    EXPECT_THROW(provider->RegisterByteArray(minusOne, "kyr/a"), std::length_error);
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has(kConfigFile));

    EXPECT_NE(provider->RegisterInt("kyr/a"), nullptr);
    accessed.clear();
    simulator.Datarefs().GetInt("kyr/a");
    EXPECT_THAT(accessed, ElementsAre("readInt 1"));
}

TEST_F(DatarefProviderTest, LogsNothing) {
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/a");
    simulator.Datarefs().RefuseAllRegistrations(true);
    provider->RegisterInt("kyr/b");
    provider->ParseConfig();
    provider->ProcessFlightLoop();
    provider->SetInt(refcon(99), 1);
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(DatarefProviderTest, StartsEveryValueAtZero) {
    provider->RegisterInt("kyr/int");
    provider->RegisterFloat("kyr/float");
    provider->RegisterDouble("kyr/double");
    provider->RegisterIntArray(3, "kyr/ints");
    provider->RegisterFloatArray(2, "kyr/floats");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
    EXPECT_EQ(provider->GetDouble(refcon(3)), 0.0);
    EXPECT_EQ(intArray(4), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(floatArray(5), (std::vector<float>{0.0F, 0.0F}));
}

TEST_F(DatarefProviderTest, KeepsAnIntThatTheSimulatorWrites) {
    const XPLMDataRef handle = provider->RegisterInt("kyr/a");
    XPLMSetDatai(handle, -2147483647);
    EXPECT_EQ(XPLMGetDatai(handle), -2147483647);
    EXPECT_EQ(provider->GetInt(refcon(1)), -2147483647);
}

TEST_F(DatarefProviderTest, KeepsAFloatThatTheSimulatorWrites) {
    const XPLMDataRef handle = provider->RegisterFloat("kyr/a");
    XPLMSetDataf(handle, 0.1F);
    EXPECT_EQ(XPLMGetDataf(handle), 0.1F);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.1F);
}

TEST_F(DatarefProviderTest, DropsWhatIsWrittenToADoubleAndReadsItAsZero) {
    const XPLMDataRef handle = provider->RegisterDouble("kyr/a");
    XPLMSetDatad(handle, 1.5);
    EXPECT_EQ(XPLMGetDatad(handle), 0.0);
    provider->SetDouble(refcon(1), 2.5);
    EXPECT_EQ(provider->GetDouble(refcon(1)), 0.0);
}

TEST_F(DatarefProviderTest, ReadsAByteArrayAsEmptyWhateverIsWrittenToIt) {
    const XPLMDataRef handle = provider->RegisterByteArray(8, "kyr/a");
    EXPECT_EQ(XPLMGetDatab(handle, nullptr, 0, 0), 0);
    std::string bytes = "12345678";
    XPLMSetDatab(handle, bytes.data(), 0, 8);
    std::string read = "--------";
    EXPECT_EQ(XPLMGetDatab(handle, read.data(), 0, 8), 0);
    EXPECT_EQ(read, "--------");
    EXPECT_EQ(bytes, "12345678");
}

TEST_F(DatarefProviderTest, ReadsAnUnknownRefconAsZeroAndDoesNotWriteIt) {
    provider->RegisterInt("kyr/a");
    int number = -7;
    float real = -7.0F;
    provider->SetInt(refcon(2), 5);
    provider->SetFloat(refcon(2), 5.0F);
    provider->SetIntArray(refcon(2), &number, 0, 1);
    provider->SetFloatArray(refcon(2), &real, 0, 1);
    EXPECT_EQ(provider->GetInt(refcon(2)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
    EXPECT_EQ(provider->GetDouble(refcon(2)), 0.0);
    EXPECT_EQ(provider->GetIntArray(refcon(2), &number, 0, 1), 0);
    EXPECT_EQ(provider->GetIntArray(refcon(2), nullptr, 0, 0), 0);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), &real, 0, 1), 0);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), nullptr, 0, 0), 0);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(real, -7.0F);
    EXPECT_EQ(provider->GetInt(nullptr), 0) << "refcon 0 is never given out";
}

TEST_F(DatarefProviderTest, CreatesNoEntryForAnUnknownRefconThatIsWritten) {
    provider->SetInt(refcon(1), 5);
    provider->SetFloat(refcon(2), 5.0F);
    provider->RegisterInt("kyr/a");
    provider->RegisterFloat("kyr/b");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
}

TEST_F(DatarefProviderTest, KnowsARefconInTheTypeOfItsDatarefOnly) {
    provider->RegisterInt("kyr/a");
    provider->SetFloat(refcon(1), 5.0F);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.0F);
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    provider->SetInt(refcon(1), 6);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.0F);
    EXPECT_EQ(provider->GetInt(refcon(1)), 6);
}

// One read of an array of 4 elements that holds 1, 2, 3 and, as ever, 0.
struct ArrayRead {
    std::string name;
    int offset;
    int max;
    int result;
    std::vector<int> copied;
};

void PrintTo(const ArrayRead& row, std::ostream* out) {
    *out << row.name;
}

class DatarefArrayReadTest : public DatarefProviderFixture,
                             public testing::WithParamInterface<ArrayRead> {};

TEST_P(DatarefArrayReadTest, CopiesWhatIsThereOfAnIntArray) {
    const XPLMDataRef handle = provider->RegisterIntArray(4, "kyr/a");
    int written[] = {1, 2, 3};
    XPLMSetDatavi(handle, written, 0, 3);
    std::vector<int> read(10, -7);
    EXPECT_EQ(XPLMGetDatavi(handle, read.data(), GetParam().offset, GetParam().max),
              GetParam().result);
    EXPECT_EQ(read, GetParam().copied);
}

TEST_P(DatarefArrayReadTest, CopiesWhatIsThereOfAFloatArray) {
    const XPLMDataRef handle = provider->RegisterFloatArray(4, "kyr/a");
    float written[] = {1.0F, 2.0F, 3.0F};
    XPLMSetDatavf(handle, written, 0, 3);
    std::vector<float> read(10, -7.0F);
    EXPECT_EQ(XPLMGetDatavf(handle, read.data(), GetParam().offset, GetParam().max),
              GetParam().result);
    EXPECT_EQ(read, std::vector<float>(GetParam().copied.begin(), GetParam().copied.end()));
}

INSTANTIATE_TEST_SUITE_P(
    AllRanges, DatarefArrayReadTest,
    testing::Values(
        ArrayRead{"Whole", 0, 4, 4, {1, 2, 3, 0, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"First", 0, 1, 1, {1, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"BeyondTheEnd", 2, 10, 2, {3, 0, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"TheLastElement", 3, 1, 1, {0, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromTheMiddle", 1, INT_MAX, 3, {2, 3, 0, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromTheEnd", 4, 1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromFarBeyondTheEnd", INT_MAX, 1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromANegativeOffset", -1, 2, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"NoElements", 0, 0, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"ANegativeCount", 0, -1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}}),
    [](const auto& row) { return row.param.name; });

TEST_F(DatarefProviderTest, AnswersTheSizeQueryOfAnArrayWhateverTheRange) {
    provider->RegisterIntArray(4, "kyr/a");
    provider->RegisterFloatArray(6, "kyr/b");
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 0, 0), 4);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, -1, -1), 4);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 9, 9), 4);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), nullptr, 0, 0), 6);
}

// One write of 8, 9, 10, 11, 12 to an array of 4 zeros.
struct ArrayWrite {
    std::string name;
    int offset;
    int count;
    std::vector<int> content;
};

void PrintTo(const ArrayWrite& row, std::ostream* out) {
    *out << row.name;
}

class DatarefArrayWriteTest : public DatarefProviderFixture,
                              public testing::WithParamInterface<ArrayWrite> {};

TEST_P(DatarefArrayWriteTest, IsWholeOrRefusedInAnIntArray) {
    const XPLMDataRef handle = provider->RegisterIntArray(4, "kyr/a");
    int values[] = {8, 9, 10, 11, 12};
    XPLMSetDatavi(handle, values, GetParam().offset, GetParam().count);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/a"), GetParam().content);
}

TEST_P(DatarefArrayWriteTest, IsWholeOrRefusedInAFloatArray) {
    const XPLMDataRef handle = provider->RegisterFloatArray(4, "kyr/a");
    float values[] = {8.0F, 9.0F, 10.0F, 11.0F, 12.0F};
    XPLMSetDatavf(handle, values, GetParam().offset, GetParam().count);
    EXPECT_EQ(simulator.Datarefs().GetFloatArray("kyr/a"),
              std::vector<float>(GetParam().content.begin(), GetParam().content.end()));
}

INSTANTIATE_TEST_SUITE_P(AllRanges, DatarefArrayWriteTest,
                         testing::Values(ArrayWrite{"AllButTheLast", 0, 3, {8, 9, 10, 0}},
                                         ArrayWrite{"First", 0, 1, {8, 0, 0, 0}},
                                         ArrayWrite{"Middle", 1, 2, {0, 8, 9, 0}},
                                         ArrayWrite{"LastButOne", 2, 1, {0, 0, 8, 0}},
                                         ArrayWrite{"Whole", 0, 4, {0, 0, 0, 0}},
                                         ArrayWrite{"TheLast", 3, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"UpToTheLast", 2, 2, {0, 0, 0, 0}},
                                         ArrayWrite{"BeyondTheEnd", 0, 5, {0, 0, 0, 0}},
                                         ArrayWrite{"AtTheEnd", 4, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"NegativeOffset", -1, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"NoElements", 0, 0, {0, 0, 0, 0}},
                                         ArrayWrite{"NegativeCount", 0, -1, {0, 0, 0, 0}},
                                         ArrayWrite{"OverflowingSum", 1, INT_MAX, {0, 0, 0, 0}}),
                         [](const auto& row) { return row.param.name; });

TEST_F(DatarefProviderTest, NeverWritesAnArrayOfOneElement) {
    provider->RegisterFloatArray(1, "kyr/a");
    provider->RegisterIntArray(1, "kyr/b");
    float real = 5.0F;
    int number = 5;
    provider->SetFloatArray(refcon(1), &real, 0, 1);
    provider->SetIntArray(refcon(2), &number, 0, 1);
    EXPECT_EQ(floatArray(1), std::vector<float>{0.0F});
    EXPECT_EQ(intArray(2), std::vector<int>{0});
}

TEST_F(DatarefProviderTest, UnregistersAllThatItHasRegistered) {
    provider->RegisterInt("kyr/a");
    provider->RegisterFloatArray(3, "kyr/b");
    simulator.Datarefs().RefuseRegistration("kyr/c");
    provider->RegisterInt("kyr/c");
    provider->UnregisterAll();
    EXPECT_EQ(simulator.Datarefs().Lookup("kyr/a"), nullptr);
    EXPECT_EQ(simulator.Datarefs().Lookup("kyr/b"), nullptr);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor").size(), 2U);
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 0U);
    provider->UnregisterAll();
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor").size(), 2U);
}

TEST_F(DatarefProviderTest, RegistersAgainWhatItHasUnregistered) {
    const XPLMPluginID editor = simulator.Plugins().AddPlugin("xplanesdk.examples.DataRefEditor");
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/b");
    provider->SetInt(refcon(1), 5);
    provider->UnregisterAll();
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_NE(provider->RegisterFloat("kyr/a"), nullptr);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int\nkyr/b int") << "as it was declared";
    provider->ProcessFlightLoop();
    ASSERT_EQ(simulator.Plugins().Messages().size(), 1U);
    EXPECT_EQ(simulator.Plugins().Messages()[0].plugin, editor);
}

TEST_F(DatarefProviderTest, StartsEveryValueAtZeroAgainAfterARestart) {
    provider->RegisterInt("kyr/a");
    provider->SetInt(refcon(1), 5);
    restart();
    provider->RegisterInt("kyr/a");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
}

} // namespace
