#include "VelmarClientTest.h"

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace orvane;
using namespace orvane::velmar;

TEST_F(VelmarClientTest, SpeaksOfNamesAndSendsNumbers) {
    ScriptedServer server({{{kRegisterFloat,
                             kRegisterCommand,
                             kRead,
                             kWrite,
                             kRun,
                             {"55 66 77 88 08 00 00 00", "09 00 00 00 01 00 00 00 02 00 00 00 02"},
                             {"55 66 77 88 04 00 00 00 02 00 00 00",
                              "0C 00 00 00 04 00 00 00 02 00 00 00 01 00 00 00"},
                             {"55 66 77 88 02 00 00 00 01 00 00 00",
                              "0C 00 00 00 02 00 00 00 01 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    registerAll(client);
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
    client.write("a/b", 2.0F);
    client.run("c/defghi", Action::Once);
    const auto reports = client.poll();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].name, "c/defghi");
    EXPECT_EQ(reports[0].state, CommandState::Pressed);
    client.unregisterCommand("c/defghi");
    client.unregisterDataref("a/b");
    EXPECT_THROW(client.read("a/b"), std::out_of_range);
    EXPECT_THROW(client.write("a/b", 1.0F), std::out_of_range);
    EXPECT_THROW(client.run("c/defghi", Action::Once), std::out_of_range);
}

TEST_F(VelmarClientTest, RefusesWhatTheServerWouldMisread) {
    ScriptedServer server({{{kRegisterFloat}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_THROW(client.registerDataref({"", Type::Float}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({std::string(256, 'x'), Type::Float}),
                 std::invalid_argument);
    EXPECT_THROW(client.registerDataref({std::string("a\0b", 3), Type::Float}),
                 std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", Type::IntArray, 0}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", Type::IntArray, 0x40000000}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", static_cast<Type>(0)}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", static_cast<Type>(6)}), std::invalid_argument);
    EXPECT_THROW(client.registerCommand(""), std::invalid_argument);
    EXPECT_EQ(textOf<std::invalid_argument>([&] { client.write("a/b", 1); }),
              "a/b is registered as float and cannot take int");
}

TEST_F(VelmarClientTest, RefusesAnArrayOfAnotherSize) {
    const Turn registerArray{
        "55 66 77 88 01 00 00 00 01 00 00 00 05 00 00 00 02 00 00 00 03 61 2F 62",
        "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"};
    ScriptedServer server({{{registerArray}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::FloatArray, 2});
    EXPECT_EQ(textOf<std::invalid_argument>([&] {
                  client.write("a/b", std::vector<float>{1, 2, 3});
              }),
              "a/b is registered with 2 elements and cannot take 3");
}

TEST_F(VelmarClientTest, NamesAllThatIsRefusedAndRegistersTheOthers) {
    ScriptedServer server(
        {{{{"55 66 77 88 "
            "01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 01 61 "
            "01 00 00 00 02 00 00 00 01 00 00 00 00 00 00 00 01 62 "
            "01 00 00 00 03 00 00 00 01 00 00 00 00 00 00 00 01 63 "
            "01 00 00 00 04 00 00 00 01 00 00 00 00 00 00 00 01 64",
            "38 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 "
            "01 00 00 00 02 00 00 00 02 00 00 00 01 00 00 00 "
            "01 00 00 00 03 00 00 00 01 00 00 00 "
            "01 00 00 00 04 00 00 00 02 00 00 00 01 00 00 00"},
           {"55 66 77 88 05 00 00 00 03 00 00 00",
            "14 00 00 00 05 00 00 00 03 00 00 00 01 00 00 00 04 00 00 00 09 00 00 00"},
           // The numbers of the refused ones are not used again.
           {"55 66 77 88 01 00 00 00 05 00 00 00 01 00 00 00 00 00 00 00 01 65",
            "0C 00 00 00 01 00 00 00 05 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    const std::vector<Dataref> four{
        {"a", Type::Int}, {"b", Type::Int}, {"c", Type::Int}, {"d", Type::Int}};
    try {
        client.registerDatarefs(four);
        FAIL() << "nothing was refused";
    } catch (const Refused& error) {
        EXPECT_EQ(error.refusedNames(), (std::vector<std::string>{"b", "d"}));
        EXPECT_EQ(error.what(),
                  server.Place() + ": registering: the simulator does not have b and d");
    }
    EXPECT_THROW(client.read("b"), std::out_of_range);
    EXPECT_EQ(client.read("c"), Value(9));
    client.registerDataref({"e", Type::Int});
}

TEST_F(VelmarClientTest, RegistersANameAgainUnderItsOwnNumber) {
    ScriptedServer server(
        {{{kRegisterFloat,
           {"55 66 77 88 01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 03 61 2F 62",
            "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"},
           kRegisterCommand,
           kRegisterCommand}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    client.registerDataref({"a/b", Type::Float}); // nothing new
    client.registerDataref({"a/b", Type::Int});
    client.registerCommand("c/defghi");
    const std::vector<std::string> twice{"c/defghi", "c/defghi"};
    client.registerCommands(twice);
}

TEST_F(VelmarClientTest, CutsALongListIntoRequestsOfOnePacket) {
    // 24 registrations of 57 bytes are 1372 with the identification; 25 would be 1429.
    std::vector<Dataref> datarefs;
    Turn first{"55 66 77 88", "20 01 00 00"};
    Turn second{"55 66 77 88", "0C 00 00 00"};
    for (int index = 0; index < 25; ++index) {
        const std::string name = std::string(39, 'x') + static_cast<char>('a' + index);
        datarefs.push_back({name, Type::Int});
        Turn& turn = index < 24 ? first : second;
        const std::string number = toHex(u32(static_cast<std::uint32_t>(index) + 1));
        turn.request += " 01 00 00 00 " + number + " 01 00 00 00 00 00 00 00 28 " +
                        toHex(Bytes(name.begin(), name.end()));
        turn.answer += " 01 00 00 00 " + number + " 01 00 00 00";
    }
    ScriptedServer server({{{first, second}}});
    Client client(optionsFor(server));
    client.registerDatarefs(datarefs);
}

TEST_F(VelmarClientTest, PollsAndBeginsAfreshInOneRequest) {
    ScriptedServer server(
        {{{kRegisterFloat,
           kRegisterCommand,
           {"55 66 77 88 08 00 00 00 03 00 00 00 02 00 00 00 08 63 2F 64 65 66 67 68 69",
            "15 00 00 00 01 00 00 00 02 00 00 00 01 03 00 00 00 02 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    registerAll(client);
    const auto reports = client.pollPresses();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].name, "c/defghi");
    EXPECT_EQ(reports[0].state, CommandState::Down);
}

TEST_F(VelmarClientTest, CanBeMoved) {
    ScriptedServer server({{{kRegisterFloat, kRead}}});
    Client first(optionsFor(server));
    first.registerDataref({"a/b", Type::Float});
    Client second(std::move(first));
    EXPECT_EQ(second.read("a/b"), Value(1.0F));
    first = std::move(second);
    EXPECT_TRUE(first.isConnected());
    static_assert(!std::is_copy_constructible_v<Client>);
}

} // namespace
