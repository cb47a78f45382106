#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What holds for the dissector with any capture.

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using DissectorRobustnessTest = DrawnCaptureTest;

// The dissector's trees, without those of incomplete segments.
std::vector<std::string> treesOf(const std::filesystem::path& file,
                                 std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-V", "-O", "orvane"});
    std::vector<std::string> trees;
    bool isOurs = false;
    for (const std::string& line : runTshark(file, arguments)) {
        if (!line.starts_with("    ")) {
            isOurs = line.starts_with("XPlaneOrvane") && !line.ends_with(", cut");
        }
        if (isOurs) {
            trees.push_back(line);
        }
    }
    return trees;
}

// Segments of changed seeds in either direction.
void drawConnection(DrawnCapture& capture, const std::vector<Bytes>& seeds, std::mt19937& random) {
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    if (below(4) > 0) {
        capture.Connect();
    } else {
        capture.JoinConnection();
    }
    for (std::size_t segment = below(12) + 1; segment > 0; --segment) {
        Bytes bytes = seeds[below(seeds.size())];
        for (std::size_t changes = below(4); changes > 0; --changes) {
            bytes[below(bytes.size())] = static_cast<unsigned char>(random());
        }
        bytes.resize(below(3) > 0 ? bytes.size() : below(700) + 1);
        if (below(2) > 0) {
            capture.FromClient(bytes);
        } else {
            capture.FromServer(bytes);
        }
    }
}

TEST_F(DissectorRobustnessTest, ShowsTheSameInEveryPass) {
    capture.Connect();
    capture.FromClientInPieces(definitions(), 100);
    capture.FromServerInPieces(outputs("01 00 00 00"), 7);
    capture.FromClient(join({data(5), data(6)}));
    capture.FromServer(join({outputs("00 00 00 00"), outputs("05 00 00 00")}));
    capture.RepeatFromServer();
    capture.FromClient(registration());
    capture.FromServer(registrationAnswer());
    const auto file = capture.Finish();
    const std::vector<std::string> once = treesOf(file, {"-Y", "tcp"});
    EXPECT_THAT(once, Contains("XPlaneOrvane, Tarnel DEFINITIONS 1 input, 1 output"));
    // Without a filter, tshark's first pass shows no fields, and the second no answers.
    EXPECT_EQ(treesOf(file, {"-2"}), once);
    std::vector<std::string> linked = treesOf(file, {"-2", "-Y", "tcp"});
    EXPECT_EQ(
        std::erase_if(
            linked, [](const std::string& line) { return line.starts_with("    [Response in: "); }),
        4U);
    EXPECT_EQ(linked, once);
}

TEST_F(DissectorRobustnessTest, ListensOnThePortOfThePreference) {
    DrawnCapture elsewhere("elsewhere.pcap", 48001);
    elsewhere.Connect();
    elsewhere.FromClient(data(5));
    elsewhere.FromServer(kEmptyOutputs);
    const auto file = elsewhere.Finish();
    EXPECT_THAT(infosOf(file), IsEmpty());
    EXPECT_THAT(infosOf(file, {"-o", "orvane.port:48001"}),
                ElementsAre("Tarnel DATA: action 7 = 5", "Tarnel answer: 0 outputs"));
    capture.Connect();
    capture.FromClient(data(5));
    EXPECT_THAT(infosOf(capture.Finish(), {"-o", "orvane.port:48001"}), IsEmpty());
}

TEST_F(DissectorRobustnessTest, StopsBeforeWiresharksLimitOfItems) {
    // 400000 packets of an unknown type would be more than a million items.
    Bytes request = kVelmar;
    request.resize(1'600'004);
    capture.Connect();
    capture.FromClientInPieces(request, 60'000);
    capture.FromServer(fromHex("00 00 00 00"));
    const std::vector<std::string> lines = runTshark(capture.Finish(), {"-Y", "orvane", "-V"});
    EXPECT_THAT(lines, Contains("    Packet: unknown type"));
    EXPECT_THAT(lines, Contains(StartsWith("    Not decoded: 0000")));
    EXPECT_THAT(lines, Each(Not(HasSubstr("Dissector bug"))));
    EXPECT_THAT(lines, Each(Not(HasSubstr("Lua Error"))));
}

TEST_F(DissectorRobustnessTest, NeverFailsOnRandomBytes) {
    std::mt19937 random(2026);
    const std::vector<Bytes> seeds{
        kTarnel,
        kVelmar,
        definitions(),
        data(3),
        registration(),
        registrationAnswer(),
        outputs("00 00 00 00"),
        kEmptyOutputs,
        join({kVelmar, registerCommand(1, "test/once"), writeDataref(7, f32(1.0F)), readDataref(7),
              runCommand(1, 1), pollCommandStates(), unregisterDataref(7)})};
    for (int connection = 0; connection < 100; ++connection) {
        drawConnection(capture, seeds, random);
    }
    const auto file = capture.Finish();
    for (const char* pass : {"-1", "-2"}) {
        std::vector<std::string> arguments{"-V"};
        if (pass == std::string("-2")) {
            arguments.emplace_back(pass);
        }
        const std::vector<std::string> lines = runTshark(file, arguments);
        EXPECT_THAT(lines, Contains(HasSubstr("XPlaneOrvane")));
        EXPECT_THAT(lines, Not(Contains(HasSubstr("Lua Error"))));
        EXPECT_THAT(lines, Not(Contains(HasSubstr("Dissector bug"))));
    }
}

} // namespace
