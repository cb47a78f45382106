#pragma once

#include "tools/orvane/dump/AnswerFrame.h"
#include "tools/orvane/dump/Message.h"
#include "tools/orvane/dump/RequestBuffer.h"
#include "tools/orvane/dump/TarnelDefinitions.h"
#include "tools/orvane/dump/TarnelRequest.h"
#include "tools/orvane/dump/VelmarNames.h"
#include "tools/orvane/dump/VelmarRequest.h"

#include <functional>
#include <optional>
#include <string>

namespace orvane::tool::dump {

// One client's connection, followed as the plugin sees it: an identification chooses the protocol,
// one request is outstanding until its answer, and what the plugin did not consume stays in front
// of what comes next.
//
// A capture shows when bytes passed, not when the plugin looked. It is taken to have had all that
// was sent before its answer began, unless the answer itself shows that it had less; then the sends
// are tried. That, and where the next request begins behind one that was torn, is a guess.
//
// Requests are told when their answer is complete, or will not come.
class Conversation final {
public:
    using Sink = std::function<void(const Message&)>;

    // `wholeConnection`: the capture shows the connection from its beginning.
    Conversation(Endpoint clientOfConnection, bool wholeConnection, Sink messageSink);
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void Begin(std::int64_t timeNs);
    void AddSent(std::int64_t timeNs, ByteView bytes);
    void AddAnswered(std::int64_t timeNs, ByteView bytes);
    // Bytes that the capture lacks.
    void MissSent(std::int64_t timeNs, std::uint64_t count);
    void MissAnswered(std::int64_t timeNs, std::uint64_t count);
    void End(std::int64_t timeNs, Direction by, bool isReset);
    // The end of the capture.
    void Finish();

private:
    enum class Protocol { Tarnel, Velmar };
    // Why no answer comes.
    enum class Silence { EndOfCapture, ClosedByPlugin, ClosedByClient, Gap };

    static std::string wordFor(std::optional<Protocol> protocol);

    void selectProtocol();
    void beginAnswer(std::int64_t timeNs);
    void finishAnswer();
    void answerNobody();
    void tellTarnel(ByteView payload);
    void tellVelmar(ByteView payload);
    TarnelRequest mostLikelyRequest(ByteView payload) const;
    bool fits(const TarnelRequest& request, ByteView payload) const;

    void giveUpRequest(Silence silence);
    void tellUnanswered(Silence silence);
    VelmarExchange readUnanswered(ByteView bytes, Silence silence);
    void tellCutAnswer(Silence silence, std::optional<Protocol> protocol);
    void tellCutRequest();
    void losePlace();
    bool findsPlace(ByteView bytes);

    void tell(Message message, std::int64_t timeNs);
    void tellPackets(const VelmarExchange& exchange);
    void tellEvent(std::int64_t timeNs, Direction direction, const std::string& text,
                   std::vector<Mark> marks = {});
    void finishRequest(std::size_t consumed);

    Endpoint client;
    bool isWhole;
    Sink sink;

    RequestBuffer sent;
    std::optional<Protocol> selected;
    std::int64_t requestTimeNs = 0;

    AnswerFrame answer;
    std::int64_t answerTimeNs = 0;
    std::size_t sentBeforeAnswer = 0; // of `sent`

    TarnelDefinitions definitions;
    VelmarNames names;
    // Skips all until a request begins.
    bool isLost = false;
    bool isOver = false;
};

} // namespace orvane::tool::dump
