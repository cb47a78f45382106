#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// Every Velmar packet, torn at every place: does the plugin wait for the rest, or end the
// simulator's process, and with which line?

namespace {

using testing::ElementsAreArray;

const std::string kShortUInt = "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4";
const std::string kShortInt = "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4";
const std::string kShortFloat = "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4";
const std::string kShortByte = "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1";
const std::string kShortCommand =
    "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref";

struct TornPacket {
    Bytes packet;
    // How many of its bytes have arrived.
    std::size_t fewest;
    std::size_t most;
    // Empty: it waits.
    std::string line;
};

class TornPacketsTest : public DrawnCaptureTest {
protected:
    // After registrations that make the datarefs 1 to 4 an int, a float, a byte and two ints.
    void draw(const TornPacket& torn) {
        for (std::size_t size = torn.fewest; size <= torn.most; ++size) {
            capture.Connect();
            capture.FromClient(
                velmarRequest({registerDataref(1, 1, 0, "a"), registerDataref(2, 2, 0, "b"),
                               registerDataref(3, 3, 0, "c"), registerDataref(4, 4, 2, "d"),
                               Bytes(torn.packet.begin(),
                                     torn.packet.begin() + static_cast<std::ptrdiff_t>(size))}));
            expected.push_back(torn.line.empty()
                                   ? "the plugin does not wait for the rest: it answers what has "
                                     "arrived"
                                   : "the rest never arrives: the simulator's process ends with " +
                                         torn.line);
        }
    }

    std::vector<std::string> expected;
};

TEST_F(TornPacketsTest, EndTheProcessOrWait) {
    const std::string longName(65, 'n');
    const std::vector<TornPacket> cases{
        {registerDataref(7, 1, 0, "s/x"), 1, 16, ""},
        {registerDataref(7, 1, 0, longName), 20, 20,
         "FATAL@XPlaneDataRef::FromStream : tried to read string with A bytes, got 3"},
        {unregisterDataref(7), 4, 7, ""},
        {registerCommand(7, longName), 4, 16, kShortCommand},
        {registerCommand(7, longName), 17, 17,
         "FATAL@VelmarDataRef::FromStream : tried to read string with A bytes, got 8"},
        {unregisterCommand(7), 4, 7, ""},
        {readDataref(7), 4, 7, kShortUInt},
        {writeDataref(1, i32(0)), 4, 11, kShortUInt},
        {writeDataref(1, i32(0)), 12, 15, kShortInt},
        {writeDataref(2, f32(0)), 12, 15, kShortFloat},
        {writeDataref(3, {0}), 12, 12, kShortByte},
        {writeDataref(4, zeros(8)), 12, 19, ""},
        {runCommand(7, 1), 4, 4, ""},
        {runCommand(7, 1), 5, 7, kShortUInt},
        {runCommand(7, 1), 8, 8, kShortByte}};
    for (const TornPacket& torn : cases) {
        draw(torn);
    }
    std::vector<std::string> experts = expertsOf(capture.Finish(), "orvane", {"-2"});
    for (std::string& expert : experts) {
        expert.erase(0, expert.find(": ") + 2);
    }
    EXPECT_THAT(experts, ElementsAreArray(expected));
}

} // namespace
