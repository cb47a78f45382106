#pragma once

#include <cstdint>
#include <map>
#include <memory>

class ILoggingService;
class IProtocol;
class IProtocolFactory;
class IRingBuffer;
class IUtilities;
class ReservedBytes;

// One accepted client: a strictly alternating request and answer machine, driven by the server
// once per flight loop, that never waits.
//
// A request is a 4-byte protocol identification and one message of that protocol; the answer is
// framed by its payload length as a little-endian uint32. While an answer is being sent nothing is
// received. Socket errors and exceptions from a protocol close this connection only.
//
// Owns its buffers and the protocol instances that the factory makes for it; services are borrowed.
// Every connection reserves about 1 GiB of address space, so that no message or answer ever has to
// be split here. It touches only what its largest message needs.
class TcpConnection final {
public:
    // Takes over the socket, which is connected and non-blocking. Throws std::bad_alloc when the
    // buffers cannot be reserved; the socket is then still the caller's.
    TcpConnection(int acceptedSocket, ILoggingService* loggingService, IUtilities* utilities,
                  IProtocolFactory* protocolFactory);
    // Closes the socket if it is still open.
    ~TcpConnection();
    TcpConnection(const TcpConnection&) = delete;
    TcpConnection& operator=(const TcpConnection&) = delete;

    // One step: receive, feed and frame the answer, or send.
    void ProcessEvents();

    // True once the socket is closed; the connection can then only be deleted.
    bool IsReadyForCleanup() const;

private:
    enum class State { Receiving = 0, Sending = 1 };

    TcpConnection(ILoggingService* loggingService, IUtilities* utilities,
                  IProtocolFactory* protocolFactory);

    void receive();
    void handleReceiveError(int error);
    void handleReceivedBytes(unsigned long count);
    void selectProtocol();
    void feedSelectedProtocol();
    void frameAnswer();

    void sendAnswer();
    void handleSendError(int error);
    void handleSentBytes(std::uint64_t sent);
    bool hasEnded() const;

    void closeSocket();
    void logVerbose(const char* detail) const;

    State state = State::Receiving;
    std::unique_ptr<ReservedBytes> recvBuffer;
    std::unique_ptr<ReservedBytes> sendBuffer;
    std::uint64_t numBytesToWrite = 0;
    std::unique_ptr<IRingBuffer> inBuffer;
    std::unique_ptr<IRingBuffer> outBuffer;
    ILoggingService* loggingService;
    IUtilities* utilities;
    IProtocolFactory* protocolFactory;
    std::map<unsigned int, IProtocol*> protocols;
    std::map<unsigned int, IProtocol*>::iterator selectedProtocol = protocols.end();
    bool readyForCleanup = false;
    int socket = -1;
};
