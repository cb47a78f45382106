#include "e2e/dissector/DrawnCapture.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <pcap/pcap.h>

namespace {

constexpr int kSnapshotLength = 262'144;
constexpr std::size_t kHeaderSize = 40;
enum Flags : std::uint8_t {
    kSyn = 0x02,
    kPushAck = 0x18,
    kAck = 0x10,
    kSynAck = 0x12,
    kReset = 0x14
};

// Headers are big-endian.
Bytes u16be(std::size_t value) {
    return {static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
}

Bytes u32be(std::uint32_t value) {
    return join({u16be(value >> 16), u16be(value)});
}

// IPv4 without options from 127.0.0.1 to 127.0.0.1, without a checksum.
Bytes ipHeader(std::size_t payload) {
    return join({fromHex("45 00"), u16be(kHeaderSize + payload),
                 fromHex("00 00 00 00 40 06 00 00 7F 00 00 01 7F 00 00 01")});
}

} // namespace

DrawnCapture::DrawnCapture(std::filesystem::path file, std::uint16_t serverPort)
    : file(std::move(file)), serverPort(serverPort) {
    handle = ::pcap_open_dead(DLT_RAW, kSnapshotLength);
    dumper = ::pcap_dump_open(handle, this->file.c_str());
    if (dumper == nullptr) {
        throw std::runtime_error(::pcap_geterr(handle));
    }
}

DrawnCapture::~DrawnCapture() {
    if (dumper != nullptr) {
        ::pcap_dump_close(dumper);
    }
    ::pcap_close(handle);
}

void DrawnCapture::Connect() {
    JoinConnection();
    shakeHands();
}

void DrawnCapture::JoinConnection() {
    ++clientPort;
    senders = {Sender{0xFFFFFFF0, {}}, Sender{5000, {}}};
}

void DrawnCapture::ConnectAgain() {
    senders = {Sender{0x40000000, {}}, Sender{0x50000000, {}}};
    shakeHands();
}

void DrawnCapture::FromClient(const Bytes& payload) {
    send(kClient, payload);
}

void DrawnCapture::FromServer(const Bytes& payload) {
    send(kServer, payload);
}

void DrawnCapture::FromClientInPieces(const Bytes& payload, std::size_t size) {
    sendInPieces(kClient, payload, size);
}

void DrawnCapture::FromServerInPieces(const Bytes& payload, std::size_t size) {
    sendInPieces(kServer, payload, size);
}

void DrawnCapture::FromClientOvertaking(const Bytes& payload, std::size_t size) {
    sendOvertaking(kClient, payload, size);
}

void DrawnCapture::FromServerOvertaking(const Bytes& payload, std::size_t size) {
    sendOvertaking(kServer, payload, size);
}

void DrawnCapture::RepeatFromClient() {
    repeat(kClient);
}

void DrawnCapture::RepeatFromServer() {
    repeat(kServer);
}

void DrawnCapture::MissFromClient(const Bytes& payload) {
    senders[kClient].next += static_cast<std::uint32_t>(payload.size());
}

void DrawnCapture::MissFromServer(const Bytes& payload) {
    senders[kServer].next += static_cast<std::uint32_t>(payload.size());
}

void DrawnCapture::PartOfFromClient(const Bytes& payload, std::size_t captured) {
    send(kClient, payload, captured);
}

void DrawnCapture::PartOfFromServer(const Bytes& payload, std::size_t captured) {
    send(kServer, payload, captured);
}

void DrawnCapture::ResetFromServer() {
    write(kServer, kReset, {});
}

std::filesystem::path DrawnCapture::Finish() {
    ::pcap_dump_close(std::exchange(dumper, nullptr));
    return file;
}

void DrawnCapture::send(Side side, const Bytes& payload, std::optional<std::size_t> captured) {
    write(side, kPushAck, payload, captured);
    senders[side].next += static_cast<std::uint32_t>(payload.size());
    senders[side].last = payload;
}

void DrawnCapture::sendInPieces(Side side, const Bytes& payload, std::size_t size) {
    for (std::size_t begin = 0; begin < payload.size(); begin += size) {
        const auto from = payload.begin() + static_cast<std::ptrdiff_t>(begin);
        const std::size_t count = std::min(size, payload.size() - begin);
        send(side, Bytes(from, from + static_cast<std::ptrdiff_t>(count)));
    }
}

void DrawnCapture::sendOvertaking(Side side, const Bytes& payload, std::size_t size) {
    const auto middle = payload.begin() + static_cast<std::ptrdiff_t>(size);
    senders[side].next += static_cast<std::uint32_t>(size);
    write(side, kPushAck, Bytes(middle, payload.end()));
    senders[side].next -= static_cast<std::uint32_t>(size);
    write(side, kPushAck, Bytes(payload.begin(), middle));
    senders[side].next += static_cast<std::uint32_t>(payload.size());
}

void DrawnCapture::shakeHands() {
    write(kClient, kSyn, {});
    senders[kClient].next += 1;
    write(kServer, kSynAck, {});
    senders[kServer].next += 1;
    write(kClient, kAck, {});
}

void DrawnCapture::repeat(Side side) {
    senders[side].next -= static_cast<std::uint32_t>(senders[side].last.size());
    send(side, Bytes(senders[side].last));
}

void DrawnCapture::write(Side side, std::uint8_t flags, const Bytes& payload,
                         std::optional<std::size_t> captured) {
    const bool isClient = side == kClient;
    const Bytes packet = join({ipHeader(payload.size()),
                               u16be(isClient ? clientPort : serverPort),
                               u16be(isClient ? serverPort : clientPort),
                               u32be(senders[side].next),
                               u32be(senders[1 - side].next),
                               {0x50, flags},
                               fromHex("FF FF 00 00 00 00"),
                               payload});
    ++milliseconds;
    pcap_pkthdr header{};
    header.ts = {milliseconds / 1000, milliseconds % 1000 * 1000};
    header.len = static_cast<bpf_u_int32>(packet.size());
    header.caplen = static_cast<bpf_u_int32>(kHeaderSize + captured.value_or(payload.size()));
    ::pcap_dump(reinterpret_cast<unsigned char*>(dumper), &header, packet.data());
}
