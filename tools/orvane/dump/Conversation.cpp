#include "tools/orvane/dump/Conversation.h"

#include "tools/orvane/dump/TarnelAnswer.h"
#include "tools/orvane/dump/TarnelWire.h"
#include "tools/orvane/dump/VelmarWire.h"
#include "tools/orvane/dump/WireReader.h"
#include "tools/orvane/dump/WireText.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane::tool::dump {

namespace {

constexpr std::size_t kIdentificationSize = 4;
// Of a request in many sends only so many bounds are tried.
constexpr std::ptrdiff_t kMostTries = 32;

std::uint32_t firstWord(ByteView bytes) {
    return WireReader(bytes).Unsigned();
}

bool isKnownIdentification(std::uint32_t word) {
    return word == kTarnelIdentification || word == kVelmarIdentification;
}

} // namespace

std::string Conversation::wordFor(std::optional<Protocol> protocol) {
    if (!protocol) {
        return "unknown";
    }
    return protocol == Protocol::Tarnel ? "tarnel" : "velmar";
}

Conversation::Conversation(Endpoint clientOfConnection, bool wholeConnection, Sink messageSink)
    : client(clientOfConnection),
      isWhole(wholeConnection),
      sink(std::move(messageSink)),
      isLost(!wholeConnection) {
    definitions.areKnown = isWhole;
    names.areComplete = isWhole;
}

void Conversation::Begin(std::int64_t timeNs) {
    if (isWhole) {
        tellEvent(timeNs, Direction::ToPlugin, "opened");
    } else {
        tellEvent(timeNs, Direction::ToPlugin, "under way",
                  {{MarkKind::Missing, "what was before is not in the capture"}});
    }
}

void Conversation::AddSent(std::int64_t timeNs, ByteView bytes) {
    if (isOver || (isLost && !findsPlace(bytes))) {
        return;
    }
    sent.Append(timeNs, bytes);
    if (!selected && !answer.HasBegun()) {
        selectProtocol();
    }
}

bool Conversation::findsPlace(ByteView bytes) {
    isLost = bytes.size() < kIdentificationSize || !isKnownIdentification(firstWord(bytes));
    return !isLost;
}

// As the plugin does, once per arrival of bytes.
void Conversation::selectProtocol() {
    if (sent.Size() < kIdentificationSize) {
        return;
    }
    const std::uint32_t identification = firstWord(sent.View());
    requestTimeNs = sent.FirstTimeNs();
    if (identification == kTarnelIdentification) {
        selected = Protocol::Tarnel;
    } else if (identification == kVelmarIdentification) {
        selected = Protocol::Velmar;
    } else {
        Message message;
        message.protocol = "unknown";
        message.kind = "identification";
        message.text = hexText(sent.View().first(kIdentificationSize));
        message.values["identification"] = identification;
        message.marks.push_back(
            {MarkKind::Unknown, "no such protocol: its 4 bytes are dropped without an answer"});
        tell(std::move(message), requestTimeNs);
    }
    sent.Consume(kIdentificationSize);
}

void Conversation::AddAnswered(std::int64_t timeNs, ByteView bytes) {
    while (!bytes.empty() && !isLost && !isOver) {
        if (!answer.HasBegun()) {
            beginAnswer(timeNs);
        }
        answer.Take(bytes);
        if (answer.IsNonsense()) {
            giveUpRequest(Silence::Gap);
            losePlace();
        } else if (answer.IsComplete()) {
            finishAnswer();
        }
    }
}

// An answer without a new request is one to bytes that were sent before: they had not arrived when
// the plugin looked for the former request.
void Conversation::beginAnswer(std::int64_t timeNs) {
    answerTimeNs = timeNs;
    while (!selected && sent.Size() >= kIdentificationSize) {
        selectProtocol();
    }
    sentBeforeAnswer = sent.Size();
}

void Conversation::finishAnswer() {
    if (!selected) {
        answerNobody();
    } else if (answer.Missing() > 0) {
        giveUpRequest(Silence::Gap);
    } else if (selected == Protocol::Tarnel) {
        tellTarnel(answer.Payload());
    } else {
        tellVelmar(answer.Payload());
    }
    answer.Reset();
}

void Conversation::answerNobody() {
    Message message;
    message.direction = Direction::FromPlugin;
    message.protocol = "unknown";
    message.kind = "answer";
    message.text = hexText(answer.Payload());
    message.marks.push_back({MarkKind::Odd, "to no request"});
    tell(std::move(message), answerTimeNs);
}

void Conversation::tellTarnel(ByteView payload) {
    TarnelRequest request = mostLikelyRequest(payload);
    if (request.endsSimulator) {
        request.message.marks.push_back({MarkKind::Odd, "answered nevertheless"});
    }
    if (request.definitions) {
        definitions = std::move(*request.definitions);
    }
    tell(std::move(request.message), requestTimeNs);
    Message reply = readTarnelAnswer(payload, request.answer, definitions);
    reply.responseNs = answerTimeNs - requestTimeNs;
    tell(std::move(reply), answerTimeNs);
    finishRequest(request.consumed);
}

// All that was sent before the answer began, if the answer is one to that, and else as many of the
// sends as it is an answer to.
TarnelRequest Conversation::mostLikelyRequest(ByteView payload) const {
    const ByteView bytes = sent.View().first(sentBeforeAnswer);
    TarnelRequest whole = readTarnelRequest(bytes, definitions);
    if (fits(whole, payload)) {
        return whole;
    }
    const std::set<std::size_t> bounds = sent.Bounds();
    std::ptrdiff_t tries = 0;
    for (const std::size_t bound : bounds) {
        if (bound >= bytes.size() || ++tries > kMostTries) {
            break;
        }
        TarnelRequest part = readTarnelRequest(bytes.first(bound), definitions);
        if (fits(part, payload)) {
            return part;
        }
    }
    return whole;
}

bool Conversation::fits(const TarnelRequest& request, ByteView payload) const {
    if (request.endsSimulator) {
        return false;
    }
    const TarnelDefinitions& then = request.definitions ? *request.definitions : definitions;
    switch (request.answer) {
    case TarnelRequest::Answer::Version:
        return firstWord(payload) == kTarnelVersion;
    case TarnelRequest::Answer::OutputsTwice:
        return isOutputStream(payload.subspan(payload.size() / 2), then);
    case TarnelRequest::Answer::Outputs:
        return !then.areKnown || isOutputStream(payload, then);
    }
    return false;
}

void Conversation::tellVelmar(ByteView payload) {
    VelmarExchange exchange =
        readVelmarExchange(sent.View().first(sentBeforeAnswer), sent.Bounds(), payload, names);
    tellPackets(exchange);
    if (!exchange.replies.empty()) {
        exchange.replies.front().responseNs = answerTimeNs - requestTimeNs;
    }
    for (Message& reply : exchange.replies) {
        tell(std::move(reply), answerTimeNs);
    }
    finishRequest(exchange.consumed);
}

void Conversation::tellPackets(const VelmarExchange& exchange) {
    for (const Message& packet : exchange.packets) {
        tell(packet, requestTimeNs);
    }
    if (exchange.packets.empty()) {
        Message message;
        message.protocol = "velmar";
        message.kind = "request";
        message.text = "without a packet";
        tell(std::move(message), requestTimeNs);
    }
}

void Conversation::finishRequest(std::size_t consumed) {
    sent.Consume(consumed);
    selected.reset();
}

// The request is told as what it most likely is, and the answer as far as it came.
void Conversation::giveUpRequest(Silence silence) {
    const std::optional<Protocol> protocol = selected;
    if (selected) {
        tellUnanswered(silence);
    }
    if (answer.HasBegun()) {
        tellCutAnswer(silence, protocol);
    }
    answer.Reset();
}

void Conversation::tellUnanswered(Silence silence) {
    const ByteView bytes = answer.HasBegun() ? sent.View().first(sentBeforeAnswer) : sent.View();
    std::vector<Message> messages;
    std::size_t consumed = 0;
    bool isExplained = answer.HasBegun() || silence == Silence::ClosedByClient;
    if (selected == Protocol::Velmar) {
        VelmarExchange exchange = readUnanswered(bytes, silence);
        isExplained = isExplained || exchange.endsSimulator;
        consumed = exchange.consumed;
        messages = std::move(exchange.packets);
    } else {
        TarnelRequest request = readTarnelRequest(bytes, definitions);
        isExplained = isExplained || request.endsSimulator;
        consumed = request.consumed;
        messages.push_back(std::move(request.message));
        if (request.definitions) {
            definitions = std::move(*request.definitions);
        }
    }
    if (!isExplained && !messages.empty()) {
        const bool isClosed = silence == Silence::ClosedByPlugin;
        messages.back().marks.push_back(
            isClosed ? Mark{MarkKind::Odd, "not answered: the plugin's side closed"}
                     : Mark{MarkKind::Missing, "no answer in the capture"});
    }
    for (Message& message : messages) {
        tell(std::move(message), requestTimeNs);
    }
    finishRequest(consumed);
}

// A simulator that ended may have done so at the first of several sends.
VelmarExchange Conversation::readUnanswered(ByteView bytes, Silence silence) {
    std::set<std::size_t> bounds = sent.Bounds();
    const bool mayHaveEnded = silence == Silence::ClosedByPlugin;
    std::ptrdiff_t tries = 0;
    for (auto bound = bounds.begin();
         mayHaveEnded && bound != bounds.end() && ++tries <= kMostTries; ++bound) {
        VelmarNames trial = names;
        VelmarExchange part = readVelmarExchange(bytes.first(std::min(*bound, bytes.size())),
                                                 bounds, std::nullopt, trial);
        if (part.endsSimulator) {
            names = std::move(trial);
            return part;
        }
    }
    return readVelmarExchange(bytes, bounds, std::nullopt, names);
}

void Conversation::tellCutAnswer(Silence silence, std::optional<Protocol> protocol) {
    Message message;
    message.direction = Direction::FromPlugin;
    message.protocol = wordFor(protocol);
    message.kind = "answer";
    message.text = fmt::format("{} of {} bytes", answer.Received(), answer.Length());
    message.values = {{"received", answer.Received()}, {"length", answer.Length()}};
    constexpr std::size_t kDamage = 4;
    if (!answer.HasLength()) {
        message.text = "cut in its length";
        message.values = nlohmann::ordered_json::object();
    } else if (answer.IsNonsense()) {
        message.marks.push_back({MarkKind::Odd, "longer than an answer can be"});
    } else if (silence == Silence::ClosedByPlugin || silence == Silence::ClosedByClient) {
        message.marks.push_back({MarkKind::Odd, "the connection ended within it"});
    } else if (silence == Silence::EndOfCapture && answer.Length() - answer.Received() == kDamage) {
        message.marks.push_back({MarkKind::Odd,
                                 "4 bytes short, as an answer that the plugin's "
                                 "system took in parts"});
    } else {
        message.marks.push_back({MarkKind::Missing, "the rest is not in the capture"});
    }
    tell(std::move(message), answerTimeNs);
}

void Conversation::MissSent(std::int64_t timeNs, std::uint64_t count) {
    if (isOver || isLost) {
        return;
    }
    if (selected) {
        tellCutRequest();
    }
    losePlace();
    definitions.areKnown = false;
    tellEvent(timeNs, Direction::ToPlugin, "skips to the next request",
              {{MarkKind::Missing, fmt::format("{} bytes are not in the capture", count)}});
}

void Conversation::MissAnswered(std::int64_t timeNs, std::uint64_t count) {
    if (isOver || isLost) {
        return;
    }
    if (answer.Skip(count)) {
        if (answer.IsComplete()) {
            finishAnswer();
        }
        return;
    }
    giveUpRequest(Silence::Gap);
    losePlace();
    tellEvent(timeNs, Direction::FromPlugin, "skips to the next request",
              {{MarkKind::Missing, fmt::format("{} bytes are not in the capture", count)}});
}

void Conversation::tellCutRequest() {
    Message message;
    message.protocol = wordFor(selected);
    message.kind = "request";
    message.text = fmt::format("of {} bytes or more", sent.Size());
    message.marks.push_back({MarkKind::Missing, "the rest is not in the capture"});
    tell(std::move(message), requestTimeNs);
}

// What was registered meanwhile is not known, either.
void Conversation::losePlace() {
    answer.Reset();
    sent.Clear();
    selected.reset();
    isLost = true;
    names.areComplete = false;
}

void Conversation::End(std::int64_t timeNs, Direction by, bool isReset) {
    if (isOver) {
        return;
    }
    if (by == Direction::FromPlugin || isReset) {
        giveUpRequest(by == Direction::FromPlugin ? Silence::ClosedByPlugin
                                                  : Silence::ClosedByClient);
        isOver = true;
    }
    tellEvent(timeNs, by, isReset ? "reset" : "closed");
}

void Conversation::Finish() {
    if (!isOver) {
        giveUpRequest(Silence::EndOfCapture);
    }
    isOver = true;
}

void Conversation::tell(Message message, std::int64_t timeNs) {
    message.client = client;
    message.timeNs = timeNs;
    sink(message);
}

void Conversation::tellEvent(std::int64_t timeNs, Direction direction, const std::string& text,
                             std::vector<Mark> marks) {
    Message message;
    message.direction = direction;
    message.protocol = "tcp";
    message.kind = "connection";
    message.text = text;
    message.marks = std::move(marks);
    tell(std::move(message), timeNs);
}

} // namespace orvane::tool::dump
