#include <functional>
#include <ostream>
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
using DatarefProviderTest = DatarefProviderFixture;

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

} // namespace
