#include "bench/tick/EchoConnection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstring>

#include "common/SimStateInformation.h"
#include "network/SigpipeBlock.h"

// Words are copied as they are.
static_assert(std::endian::native == std::endian::little);

namespace {

constexpr std::size_t kBufferSize = 0x0FFFFFFF;
constexpr std::ptrdiff_t kHeaderSize = 4;

constexpr std::uint32_t kDefinitions = 0xDDEEFFC0;
constexpr std::uint32_t kAircraftIdentifier = 0xFFFF;
constexpr std::uint32_t kValueLength = 4;

// Offsets from the start of a request, which begins with its identification.
constexpr std::size_t kSpecifier = 4;
constexpr std::size_t kInputCount = 12;
constexpr std::size_t kOutputCount = 20;
constexpr std::size_t kFirstRecord = 24;
constexpr std::size_t kFirstItem = 16;

// Sizes of the records, and offsets in them.
constexpr std::size_t kInputSize = 488;
constexpr std::size_t kInputTarget = 280;
constexpr std::size_t kOutputSize = 116;
constexpr std::size_t kOutputName = 4;
constexpr std::size_t kItemSize = 8;
constexpr std::size_t kItemValue = 4;

// The client's axes run from -1 to 1.
constexpr float kPerStep = 2.0F / 65535.0F;

std::uint32_t wordAt(const unsigned char* place) {
    std::uint32_t word = 0;
    std::memcpy(&word, place, sizeof(word));
    return word;
}

XPLMDataRef datarefNamedAt(const unsigned char* place) {
    return XPLMFindDataRef(reinterpret_cast<const char*>(place));
}

} // namespace

EchoConnection::EchoConnection(int acceptedSocket, const SimStateInformation& aircraft)
    : socket(acceptedSocket), simState(aircraft), request(kBufferSize), frame(kBufferSize) {
    const int enabled = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &enabled, sizeof(enabled));
}

EchoConnection::~EchoConnection() {
    close();
}

void EchoConnection::ProcessEvents() {
    if (sending) {
        sendAnswer();
    } else {
        receive();
    }
}

void EchoConnection::receive() {
    const ssize_t received = ::recv(socket, request.Get(), kBufferSize, 0);
    if (received == -1 && errno == EAGAIN) {
        return;
    }
    if (received <= 0) {
        close();
    } else if (wordAt(request.Get() + kSpecifier) == kDefinitions) {
        define();
        writeAnswer();
    } else {
        writeAnswer();
        applyItems();
    }
}

void EchoConnection::define() {
    const unsigned char* record = request.Get() + kFirstRecord;
    inputs.resize(wordAt(request.Get() + kInputCount));
    for (XPLMDataRef& input : inputs) {
        input = datarefNamedAt(record + kInputTarget);
        record += kInputSize;
    }
    outputs.resize(wordAt(request.Get() + kOutputCount));
    for (Output& output : outputs) {
        output = {wordAt(record), datarefNamedAt(record + kOutputName)};
        record += kOutputSize;
    }
}

void EchoConnection::writeAnswer() {
    frameEnd = frame.Get() + kHeaderSize;
    for (const Output& output : outputs) {
        append(output.identifier);
        append(kValueLength);
        append(std::bit_cast<std::uint32_t>(XPLMGetDataf(output.dataref)));
    }
    append(kAircraftIdentifier);
    append(kValueLength);
    append(simState.GetPlaneId());
    const auto payload = static_cast<std::uint32_t>(frameEnd - frame.Get() - kHeaderSize);
    std::memcpy(frame.Get(), &payload, sizeof(payload));
    sending = true;
}

void EchoConnection::applyItems() const {
    const unsigned char* item = request.Get() + kFirstItem;
    for (const XPLMDataRef input : inputs) {
        const auto raw = static_cast<float>(static_cast<std::int32_t>(wordAt(item + kItemValue)));
        XPLMSetDataf(input, kPerStep * raw - 1.0F);
        item += kItemSize;
    }
}

void EchoConnection::sendAnswer() {
    const auto size = static_cast<std::size_t>(frameEnd - frame.Get());
    const SigpipeBlock block;
    const ssize_t sent = ::send(socket, frame.Get(), size, 0);
    if (sent == static_cast<ssize_t>(size)) {
        sending = false;
    } else {
        // The client reads every answer whole, so all of it fits.
        close();
    }
}

void EchoConnection::close() {
    if (socket != -1) {
        ::close(socket);
        socket = -1;
    }
}

void EchoConnection::append(std::uint32_t word) {
    std::memcpy(frameEnd, &word, sizeof(word));
    frameEnd += sizeof(word);
}
