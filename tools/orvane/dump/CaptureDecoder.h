#pragma once

#include "tools/orvane/dump/Conversation.h"
#include "tools/orvane/dump/StreamAssembler.h"
#include "tools/orvane/dump/TcpSegment.h"

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace orvane::tool::dump {

// Makes messages of the frames of a capture: finds the connections to the plugin's port, puts their
// bytes in order and reads them. Traffic of other ports is passed over.
class CaptureDecoder final {
public:
    CaptureDecoder(std::uint16_t pluginPort, Conversation::Sink messageSink);
    ~CaptureDecoder();
    CaptureDecoder(const CaptureDecoder&) = delete;
    CaptureDecoder& operator=(const CaptureDecoder&) = delete;

    // In the order of the capture.
    void Add(std::int64_t timeNs, LinkType type, ByteView frame);
    // Tells what was under way when the capture ended.
    void Finish();

private:
    // Of a client and of the plugin.
    using Key = std::pair<Endpoint, Endpoint>;
    class Connection;

    Connection* find(const Key& key, const TcpSegment& segment, Direction direction,
                     std::int64_t timeNs);

    std::uint16_t port;
    Conversation::Sink sink;
    std::map<Key, std::unique_ptr<Connection>> connections;
};

} // namespace orvane::tool::dump
