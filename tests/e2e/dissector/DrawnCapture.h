#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "support/Bytes.h"

struct pcap;
struct pcap_dumper;

// A capture file made by a test: connections to the plugin, segment by segment, a millisecond
// apart. For what happens once in a thousand times on a real network.
class DrawnCapture final {
public:
    explicit DrawnCapture(std::filesystem::path file, std::uint16_t serverPort = 48000);
    ~DrawnCapture();
    DrawnCapture(const DrawnCapture&) = delete;
    DrawnCapture& operator=(const DrawnCapture&) = delete;

    // Later segments belong to a new connection. Connect adds the three segments of its handshake;
    // with JoinConnection it began before the capture.
    void Connect();
    void JoinConnection();
    // From the client's port of the last connection, with other sequence numbers.
    void ConnectAgain();

    void FromClient(const Bytes& payload);
    void FromServer(const Bytes& payload);
    // One segment for every `size` bytes.
    void FromClientInPieces(const Bytes& payload, std::size_t size);
    void FromServerInPieces(const Bytes& payload, std::size_t size);
    // In two segments; the one with the bytes from `size` on arrives first.
    void FromClientOvertaking(const Bytes& payload, std::size_t size);
    void FromServerOvertaking(const Bytes& payload, std::size_t size);

    // Repeats the side's last segment.
    void RepeatFromClient();
    void RepeatFromServer();
    // Sent, but not captured at all, or only the first bytes of the payload.
    void MissFromClient(const Bytes& payload);
    void MissFromServer(const Bytes& payload);
    void PartOfFromClient(const Bytes& payload, std::size_t captured);
    void PartOfFromServer(const Bytes& payload, std::size_t captured);

    // The end of the connection, with a reset.
    void ResetFromServer();

    // Nothing can be added afterwards.
    std::filesystem::path Finish();

private:
    enum Side : std::size_t { kClient, kServer };
    struct Sender {
        std::uint32_t next = 0;
        Bytes last;
    };

    void send(Side side, const Bytes& payload, std::optional<std::size_t> captured = {});
    void sendInPieces(Side side, const Bytes& payload, std::size_t size);
    void sendOvertaking(Side side, const Bytes& payload, std::size_t size);
    void repeat(Side side);
    void shakeHands();
    void write(Side side, std::uint8_t flags, const Bytes& payload,
               std::optional<std::size_t> captured = {});

    std::filesystem::path file;
    std::uint16_t serverPort;
    std::uint16_t clientPort = 50000;
    std::array<Sender, 2> senders;
    long milliseconds = 0;
    pcap* handle = nullptr;
    pcap_dumper* dumper = nullptr;
};
