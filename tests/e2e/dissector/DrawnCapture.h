#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "support/Bytes.h"

struct pcap;
struct pcap_dumper;

// A capture that was never captured: connections to the plugin, segment by segment as a test says,
// a millisecond apart. For what a network does once in a thousand times.
class DrawnCapture final {
public:
    explicit DrawnCapture(std::filesystem::path file, std::uint16_t serverPort = 48000);
    ~DrawnCapture();
    DrawnCapture(const DrawnCapture&) = delete;
    DrawnCapture& operator=(const DrawnCapture&) = delete;

    // Further segments belong to a new connection, of which the three segments of the handshake are
    // in the capture. Without it the connection began before the capture.
    void Connect();
    void JoinConnection();
    // From the port of the connection before, with other sequence numbers.
    void ConnectAgain();

    void FromClient(const Bytes& payload);
    void FromServer(const Bytes& payload);
    // One segment for every `size` bytes.
    void FromClientInPieces(const Bytes& payload, std::size_t size);
    void FromServerInPieces(const Bytes& payload, std::size_t size);
    // The bytes from `size` on in a segment that overtakes the one with those before.
    void FromClientOvertaking(const Bytes& payload, std::size_t size);
    void FromServerOvertaking(const Bytes& payload, std::size_t size);

    // The side's last segment once more.
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
