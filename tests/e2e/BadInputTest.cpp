#include <sys/resource.h>
#include <sys/wait.h>

#include <string>

#include "e2e/EndToEndTest.h"

namespace {

class BadInputTest : public EndToEndTest {
protected:
    BadInputTest() { startSimulator(); }

    // The request ends the simulator; this is the last line of its log.
    void expectFatal(const Bytes& request, const std::string& line) {
        TestClient client;
        client.Send(request);
        simulator->Send("step 10");
        const int status = simulator->WaitForEnd();
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 5);
        EXPECT_EQ(simulator->LastLogMessage(), line);
        EXPECT_TRUE(simulator->LogText().ends_with('\n'));
    }

    // The request ends its client's connection, and no other.
    void expectClosed(const Bytes& request) {
        TestClient bystander;
        ASSERT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
        TestClient client;
        client.Send(request);
        EXPECT_TRUE(client.IsClosedByServer(*simulator));
        EXPECT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
    }

    const Bytes poll = tarnelRequest(dataMessage({}));
};

TEST_F(BadInputTest, EndsTheSimulatorWhenInputRecordsAreAnnouncedButMissing) {
    // One input record of size 0: complete by its header, but the record is not there.
    expectFatal(fromHex("11 22 33 44 C0 FF EE DD 00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"),
                "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenAnInputRecordEndsBeforeItsFloats) {
    // One input record of 52 bytes: thirteen integers, and then floats that are not there.
    expectFatal(join({fromHex("11 22 33 44 C0 FF EE DD 34 00 00 00 01 00 00 00 "
                              "00 00 00 00 00 00 00 00"),
                      zeros(52)}),
                "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenOutputRecordsAreAnnouncedButMissing) {
    expectFatal(fromHex("11 22 33 44 C0 FF EE DD 00 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00"),
                "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenNoDescriptorIsLeftForAClient) {
    // Descriptors that are open stay open.
    const rlimit limit{3, 3};
    ASSERT_EQ(::prlimit(simulator->Pid(), RLIMIT_NOFILE, &limit, nullptr), 0);
    expectFatal({},
                "Error@NetworkResources::ProcessEvents : accept() : Unknown Socket Error Code 24");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenItemsAreAnnouncedButMissing) {
    expectFatal(fromHex("11 22 33 44 DE AD BE EF 00 00 00 00 01 00 00 00"),
                "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenAVelmarCommandsDescriptorIsShort) {
    // A name of 5 bytes: 10 bytes in all, but 13 are needed.
    expectFatal(fromHex("55 66 77 88 03 00 00 00 01 00 00 00 05 73 69 6D 2F 61"),
                "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref");
}

TEST_F(BadInputTest, EndsTheSimulatorWhenAVelmarDatarefsNameIsTorn) {
    // 'A', 0x41, is the length of the name; only 3 bytes follow.
    expectFatal(fromHex("55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 41 73 69 6D"),
                "FATAL@XPlaneDataRef::FromStream : tried to read string with A bytes, got 3");
}

TEST_F(BadInputTest, ClosesTheConnectionForAnArrayOutputWithANegativeCount) {
    const std::string fileBefore = directory.Read("Resources/plugins/xplaneorvane_datarefs.cfg");
    expectClosed(tarnelRequest(definitionsMessage(
        {}, {{.id = 1, .name = "kyr/negative", .type = RecordType::IntArray, .count = -1}})));
    EXPECT_TRUE(
        simulator->LastLogMessage().starts_with("Warning@TcpConnection::ProcessEvents : Feed() : "))
        << simulator->LastLogMessage();
    EXPECT_EQ(directory.Read("Resources/plugins/xplaneorvane_datarefs.cfg"), fileBefore);
    EXPECT_TRUE(simulator->Ask("get kyr/negative").starts_with("error: "));

    // The name is still free.
    TestClient client;
    client.Exchange(
        *simulator,
        tarnelRequest(definitionsMessage(
            {}, {{.id = 1, .name = "kyr/negative", .type = RecordType::IntArray, .count = 2}})));
    EXPECT_EQ(simulator->Get("kyr/negative"), "0,0");
}

TEST_F(BadInputTest, SendsZerosForElementsThatADatarefDoesNotHave) {
    simulator->Ask("set test/floats 1,1,1,1,1,1,1,1");
    TestClient client;
    EXPECT_EQ(client.Exchange(*simulator,
                              tarnelRequest(definitionsMessage({}, {{.id = 1,
                                                                     .name = "test/floats",
                                                                     .type = RecordType::FloatArray,
                                                                     .first = 7,
                                                                     .count = 3}}))),
              join({fromHex("01 00 00 00 0C 00 00 00 00 00 80 3F 00 00 00 00 00 00 00 00"),
                    trailer(kAircraftOne)}));
}

TEST_F(BadInputTest, AnswersAnUnknownMessageWithTheOutputs) {
    TestClient client;
    EXPECT_EQ(
        client.Exchange(*simulator, tarnelRequest(fromHex("01 02 03 04 05 06 07 08 09 0A 0B 0C"))),
        trailer(kAircraftOne));
    EXPECT_EQ(simulator->LogText(), "");
}

} // namespace
