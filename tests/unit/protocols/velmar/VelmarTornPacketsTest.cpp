#include <cstddef>
#include <string>
#include <vector>

#include "VelmarProtocolTest.h"

namespace {

constexpr const char* kWaits = "";
constexpr const char* kShortDescriptor =
    "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref";
constexpr const char* kNoWord = "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4";
constexpr const char* kNoInt = "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4";
constexpr const char* kNoFloat = "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4";
constexpr const char* kNoByte = "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1";

// Each packet is cut after every byte. If the plugin waits, the packet is completed.
class VelmarTornPacketsTest : public VelmarProtocolTest {
protected:
    void SetUp() override {
        define("sim/all", xplmType_Int | xplmType_Float | xplmType_IntArray | xplmType_FloatArray,
               2);
        simulator.Commands().Define("sim/fire", "");
        for (const std::uint32_t type : {1U, 2U, 3U, 4U, 5U}) {
            ask(datarefPacket(type, type, 2, "sim/all"));
        }
        ask(commandPacket(7, "sim/fire"));
        simulator.Recorder().Enable();
    }

    // Every cut from `first` to `last` bytes inclusive ends the process with this line.
    void expectFatal(const Bytes& packet, std::size_t first, std::size_t last,
                     const std::string& line) {
        for (std::size_t cut = first; cut <= last; ++cut) {
            SCOPED_TRACE(testing::Message() << "cut after " << cut << " bytes");
            drain(in);
            drain(out);
            EXPECT_EQ(fatalLineOf(head(packet, cut)), line);
        }
    }

    // Every cut from `first` to `last` bytes inclusive is not answered and left unread, and the
    // rest completes the packet.
    void expectWaiting(const Bytes& packet, std::size_t first, std::size_t last,
                       const std::string& reply) {
        for (std::size_t cut = first; cut <= last; ++cut) {
            SCOPED_TRACE(testing::Message() << "cut after " << cut << " bytes");
            drain(in);
            drain(out);
            EXPECT_EQ(fatalLineOf(head(packet, cut)), kWaits);
            EXPECT_EQ(in.GetNumReadBytesAvailable(), cut);
            EXPECT_EQ(out.GetNumReadBytesAvailable(), 0U);
            EXPECT_EQ(ask(tail(packet, cut)), reply);
            EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
        }
    }

    static Bytes head(const Bytes& packet, std::size_t count) {
        return {packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(count)};
    }

    static Bytes tail(const Bytes& packet, std::size_t from) {
        return {packet.begin() + static_cast<std::ptrdiff_t>(from), packet.end()};
    }

    bool hasCalled(const char* function) { return !simulator.Recorder().CallsOf(function).empty(); }
};

TEST_F(VelmarTornPacketsTest, LetsATornTypeWait) {
    expectWaiting(fromHex("08 00 00 00"), 1, 3, "00 00 00 00");
}

TEST_F(VelmarTornPacketsTest, LetsADatarefDescriptorWaitUpToItsNameLength) {
    const Bytes packet = datarefPacket(9, 1, 0, "sim/all");
    expectWaiting(packet, 4, 16, "01 00 00 00 09 00 00 00 01 00 00 00");
}

TEST_F(VelmarTornPacketsTest, WarnsAtEachFeedOfAWaitingDatarefDescriptor) {
    ask("01 00 00 00  09 00 00 00");
    ask("01 00 00 00");
    const std::string line =
        "WARNING@XPlaneDataRef::FromStream : Not enough bytes to read dataref.";
    EXPECT_EQ(logger.At(LogLevelWarning), (std::vector<std::string>{line, line}));
    EXPECT_EQ(logger.messages.size(), 2U);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnADatarefDescriptorTornInItsName) {
    const Bytes packet = datarefPacket(9, 1, 0, "sim/all");
    const std::string begin =
        "FATAL@XPlaneDataRef::FromStream : tried to read string with \x07 bytes, got ";
    expectFatal(packet, 17, 17, begin + "0");
    expectFatal(packet, 18, 18, begin + "1");
    expectFatal(packet, 23, 23, begin + "6");
}

TEST_F(VelmarTornPacketsTest, LetsATornDatarefUnregistrationWait) {
    expectWaiting(fromHex("02 00 00 00  09 00 00 00"), 4, 7, "02 00 00 00 09 00 00 00 01 00 00 00");
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAShortCommandDescriptor) {
    expectFatal(commandPacket(9, "sim/fire"), 4, 16, kShortDescriptor);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAWholeCommandDescriptorWithAShortName) {
    simulator.Commands().Define("sim/run", "");
    EXPECT_EQ(fatalLineOf(commandPacket(9, "sim/run")), kShortDescriptor);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnACommandDescriptorTornInItsName) {
    const Bytes packet = commandPacket(9, "sim/autopilot"); // 13 characters
    const std::string begin =
        "FATAL@VelmarDataRef::FromStream : tried to read string with \r bytes, got ";
    expectFatal(packet, 17, 17, begin + "8");
    expectFatal(packet, 21, 21, begin + "12");
}

TEST_F(VelmarTornPacketsTest, LetsATornCommandUnregistrationWait) {
    expectWaiting(fromHex("04 00 00 00  09 00 00 00"), 4, 7,
                  "04 00 00 00 09 00 00 00 02 00 00 00 02 00 00 00");
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnATornRead) {
    expectFatal(fromHex("05 00 00 00  01 00 00 00"), 4, 7, kNoWord);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAWriteTornInItsIdentifierOrLength) {
    expectFatal(fromHex("06 00 00 00  01 00 00 00  04 00 00 00"), 4, 11, kNoWord);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAWriteTornInAnInt) {
    expectFatal(fromHex("06 00 00 00  01 00 00 00  04 00 00 00  2A 00 00 00"), 12, 15, kNoInt);
    EXPECT_FALSE(hasCalled("XPLMSetDatai"));
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAWriteTornInAFloat) {
    expectFatal(fromHex("06 00 00 00  02 00 00 00  04 00 00 00  00 00 80 3F"), 12, 15, kNoFloat);
    EXPECT_FALSE(hasCalled("XPLMSetDataf"));
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnAWriteTornBeforeItsByte) {
    expectFatal(fromHex("06 00 00 00  03 00 00 00  01 00 00 00  2A"), 12, 12, kNoByte);
    EXPECT_FALSE(hasCalled("XPLMSetDatai"));
}

TEST_F(VelmarTornPacketsTest, LetsAWriteTornInAnIntArrayWait) {
    const Bytes packet = fromHex("06 00 00 00  04 00 00 00  08 00 00 00  01 00 00 00 02 00 00 00");
    for (std::size_t cut = 12; cut <= 19; ++cut) {
        drain(in);
        EXPECT_EQ(ask(head(packet, cut)), "");
    }
    EXPECT_FALSE(hasCalled("XPLMSetDatavi"));
    drain(in);
    expectWaiting(packet, 12, 19, "06 00 00 00 04 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetIntArray("sim/all"), (std::vector<int>{1, 2}));
}

TEST_F(VelmarTornPacketsTest, LetsAWriteTornInAFloatArrayWait) {
    const Bytes packet = fromHex("06 00 00 00  05 00 00 00  08 00 00 00  00 00 80 3F 00 00 00 C0");
    for (std::size_t cut = 12; cut <= 19; ++cut) {
        drain(in);
        EXPECT_EQ(ask(head(packet, cut)), "");
    }
    EXPECT_FALSE(hasCalled("XPLMSetDatavf"));
    drain(in);
    expectWaiting(packet, 12, 19, "06 00 00 00 05 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetFloatArray("sim/all"), (std::vector<float>{1.0F, -2.0F}));
}

TEST_F(VelmarTornPacketsTest, LetsARunOfNothingButItsTypeWait) {
    expectWaiting(fromHex("07 00 00 00  07 00 00 00  01"), 4, 4, "");
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMCommandOnce").size(), 1U);
}

TEST_F(VelmarTornPacketsTest, EndsTheProcessOnARunTornAfterItsType) {
    const Bytes packet = fromHex("07 00 00 00  07 00 00 00  01");
    expectFatal(packet, 5, 7, kNoWord);
    expectFatal(packet, 8, 8, kNoByte);
    EXPECT_FALSE(hasCalled("XPLMCommandOnce"));
}

TEST_F(VelmarTornPacketsTest, AnswersThePacketsBeforeATornOneThatWaits) {
    EXPECT_EQ(ask("08 00 00 00  07 00 00 00"), "00 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 4U);
}

TEST_F(VelmarTornPacketsTest, CompletesATornWriteToAnUnknownDatarefWithTheBytesThatFollow) {
    EXPECT_EQ(ask("06 00 00 00  09 00 00 00  08 00"), "");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 2U);
    EXPECT_EQ(ask("00 00"), "00 00 00 00");
}

} // namespace
