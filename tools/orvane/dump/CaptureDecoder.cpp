#include "tools/orvane/dump/CaptureDecoder.h"

#include <optional>

namespace orvane::tool::dump {

// Both directions of one connection, and what is said on it.
class CaptureDecoder::Connection final {
public:
    Connection(Endpoint client, bool isWhole, std::uint32_t firstSequence,
               const Conversation::Sink& sink)
        : initialSequence(firstSequence),
          conversation(client, isWhole, sink),
          toPlugin({.bytes = [this](ByteView bytes) { conversation.AddSent(nowNs, bytes); },
                    .gap = [this](std::uint64_t size) { conversation.MissSent(nowNs, size); },
                    .end = [this] { end(Direction::ToPlugin, false); }}),
          fromPlugin({.bytes = [this](ByteView bytes) { conversation.AddAnswered(nowNs, bytes); },
                      .gap = [this](std::uint64_t size) { conversation.MissAnswered(nowNs, size); },
                      .end = [this] { end(Direction::FromPlugin, false); }}) {}

    void Begin(std::int64_t timeNs) { conversation.Begin(timeNs); }

    void Add(std::int64_t timeNs, const TcpSegment& segment, Direction direction) {
        nowNs = timeNs;
        const bool isToPlugin = direction == Direction::ToPlugin;
        // What the receiver has seen was sent before this.
        if (segment.hasAcknowledgement) {
            (isToPlugin ? fromPlugin : toPlugin).Acknowledge(segment.acknowledged);
        }
        if (segment.isReset) {
            end(direction, true);
            return;
        }
        (isToPlugin ? toPlugin : fromPlugin).Add(segment);
    }

    void Finish() {
        toPlugin.Finish();
        fromPlugin.Finish();
        conversation.Finish();
    }

    bool IsOver() const { return isReset || (clientHasClosed && pluginHasClosed); }
    bool BeganWith(std::uint32_t sequence) const { return initialSequence == sequence; }

private:
    void end(Direction by, bool byReset) {
        isReset = isReset || byReset;
        clientHasClosed = clientHasClosed || by == Direction::ToPlugin;
        pluginHasClosed = pluginHasClosed || by == Direction::FromPlugin;
        conversation.End(nowNs, by, byReset);
    }

    std::int64_t nowNs = 0;
    std::uint32_t initialSequence;
    bool isReset = false;
    bool clientHasClosed = false;
    bool pluginHasClosed = false;
    Conversation conversation;
    StreamAssembler toPlugin;
    StreamAssembler fromPlugin;
};

CaptureDecoder::CaptureDecoder(std::uint16_t pluginPort, Conversation::Sink messageSink)
    : port(pluginPort), sink(std::move(messageSink)) {}

CaptureDecoder::~CaptureDecoder() = default;

void CaptureDecoder::Add(std::int64_t timeNs, LinkType type, ByteView frame) {
    const std::optional<TcpSegment> segment = readSegment(type, frame);
    if (!segment || (segment->source.port != port && segment->destination.port != port)) {
        return;
    }
    const bool isToPlugin = segment->destination.port == port;
    const Direction direction = isToPlugin ? Direction::ToPlugin : Direction::FromPlugin;
    const Key key = isToPlugin ? Key{segment->source, segment->destination}
                               : Key{segment->destination, segment->source};
    Connection* const connection = find(key, *segment, direction, timeNs);
    if (connection == nullptr) {
        return;
    }
    connection->Add(timeNs, *segment, direction);
    if (connection->IsOver()) {
        connection->Finish();
        connections.erase(key);
    }
}

// Null for the remains of a connection of which nothing else was captured.
CaptureDecoder::Connection* CaptureDecoder::find(const Key& key, const TcpSegment& segment,
                                                 Direction direction, std::int64_t timeNs) {
    const bool isCall = segment.isSyn && direction == Direction::ToPlugin;
    const auto found = connections.find(key);
    if (found != connections.end()) {
        if (!isCall || found->second->BeganWith(segment.sequence)) {
            return found->second.get();
        }
        // The same port again, of a connection whose end was not captured.
        found->second->Finish();
        connections.erase(found);
    }
    if (!segment.isSyn && segment.payloadSize == 0) {
        return nullptr;
    }
    auto& connection = connections[key];
    connection = std::make_unique<Connection>(key.first, segment.isSyn, segment.sequence, sink);
    connection->Begin(timeNs);
    return connection.get();
}

void CaptureDecoder::Finish() {
    for (const auto& [key, connection] : connections) {
        connection->Finish();
    }
    connections.clear();
}

} // namespace orvane::tool::dump
