#include "network/TcpConnection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <string>

#include "common/ILoggingService.h"
#include "common/IUtilities.h"
#include "common/LogMessage.h"
#include "network/IProtocol.h"
#include "network/IProtocolFactory.h"
#include "network/ReservedBytes.h"
#include "network/RingBuffer.h"
#include "network/SigpipeBlock.h"

namespace {

constexpr int kBufferSize = 0x0FFFFFFF;
constexpr unsigned long kAnswerHeaderSize = 4;
constexpr unsigned long kIdentificationSize = 4;

std::intptr_t readPositionOf(IRingBuffer& buffer) {
    return reinterpret_cast<std::intptr_t>(buffer.GetReadPosAddress());
}

void writeAnswerHeader(unsigned char* frame, unsigned long payloadLength) {
    for (unsigned long i = 0; i < kAnswerHeaderSize; ++i) {
        frame[i] = static_cast<unsigned char>(payloadLength >> (8 * i));
    }
}

// A client may close and reset between any two calls, and a send then raises SIGPIPE, which by
// default ends the simulator's process.
ssize_t sendWithoutSignal(int socket, const unsigned char* bytes, std::size_t size) {
    const SigpipeBlock block;
    const ssize_t result = ::send(socket, bytes, size, 0);
    if (result == -1 && errno == EPIPE) {
        block.TakeSignal();
    }
    return result;
}

} // namespace

TcpConnection::TcpConnection(ILoggingService* loggingService, IUtilities* utilities,
                             IProtocolFactory* protocolFactory)
    : loggingService(loggingService), utilities(utilities), protocolFactory(protocolFactory) {}

// Delegates first: if a buffer cannot be had, the destructor still frees the protocols.
TcpConnection::TcpConnection(int acceptedSocket, ILoggingService* loggingService,
                             IUtilities* utilities, IProtocolFactory* protocolFactory)
    : TcpConnection(loggingService, utilities, protocolFactory) {
    protocols = protocolFactory->CreateProtocolInstances();
    selectedProtocol = protocols.end();
    recvBuffer = std::make_unique<ReservedBytes>(kBufferSize);
    sendBuffer = std::make_unique<ReservedBytes>(kBufferSize);
    inBuffer = std::make_unique<RingBuffer>(kBufferSize, loggingService);
    outBuffer = std::make_unique<RingBuffer>(kBufferSize, loggingService);
    socket = acceptedSocket;
    const int enabled = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &enabled, sizeof(enabled));
}

TcpConnection::~TcpConnection() {
    for (const auto& [identification, protocol] : protocols) {
        delete protocol;
    }
    if (socket != -1) {
        ::close(socket);
    }
}

void TcpConnection::ProcessEvents() {
    if (state == State::Receiving) {
        receive();
    } else {
        sendAnswer();
    }
}

bool TcpConnection::IsReadyForCleanup() const {
    return readyForCleanup;
}

void TcpConnection::receive() {
    const ssize_t result = ::recv(socket, recvBuffer->Get(), kBufferSize, 0);
    if (result == -1) {
        handleReceiveError(errno);
    } else if (result == 0) {
        logVerbose("recv() : clean disconnect");
        closeSocket();
    } else {
        handleReceivedBytes(static_cast<unsigned long>(result));
    }
}

void TcpConnection::handleReceiveError(int error) {
    switch (error) {
    case EAGAIN:
        return;
    case EBADF:
    case EINTR:
    case ENOMEM:
    case ENOTCONN:
    case ECONNREFUSED:
    case ENOTSOCK:
        if (loggingService->IsEnabled(LogLevelVerbose)) {
            logVerbose(("recv() : " + utilities->GetSocketErrorMsg(error)).c_str());
        }
        break;
    // ECONNRESET is reported here but closes quietly on the sending side.
    default:
        loggingService->Log(LogLevelWarning, "Warning@TcpConnection::ProcessEvents : recv() : " +
                                                 utilities->GetSocketErrorMsg(error));
        break;
    }
    closeSocket();
}

void TcpConnection::handleReceivedBytes(unsigned long count) {
    // Starting over while empty reuses the pages that the connection has already touched.
    if (inBuffer->GetNumReadBytesAvailable() == 0) {
        inBuffer->ResetBuffer();
    }
    inBuffer->WriteByteArray(recvBuffer->Get(), count);
    logIfEnabled(loggingService, LogLevelVerbose,
                 "Verbose@TcpConnection::ProcessEvents : recv() received num bytes ", count,
                 "  readposptr ", readPositionOf(*inBuffer));
    selectProtocol();
    outBuffer->SetReadPosRestorePoint();
    if (selectedProtocol == protocols.end()) {
        outBuffer->RestoreReadPos();
        return;
    }
    feedSelectedProtocol();
}

// Tried once per receive; the four bytes of an unknown identification stay consumed.
void TcpConnection::selectProtocol() {
    if (selectedProtocol == protocols.end() &&
        inBuffer->GetNumReadBytesAvailable() >= kIdentificationSize) {
        selectedProtocol = protocols.find(inBuffer->ReadUInt32());
    }
}

void TcpConnection::feedSelectedProtocol() {
    int result = 0;
    try {
        result = selectedProtocol->second->Feed(inBuffer.get(), outBuffer.get());
    } catch (const std::exception& error) {
        loggingService->Log(
            LogLevelWarning,
            std::string("Warning@TcpConnection::ProcessEvents : Feed() : ") + error.what());
        closeSocket();
        return;
    }
    if (result < 0) {
        logIfEnabled(loggingService, LogLevelVerbose,
                     "Verbose@TcpConnection::ProcessEvents : recv() incomplete packet readposptr ",
                     readPositionOf(*inBuffer));
        return;
    }
    selectedProtocol = protocols.end();
    frameAnswer();
}

void TcpConnection::frameAnswer() {
    outBuffer->SetReadPosRestorePoint();
    const unsigned long payloadLength = outBuffer->ReadByteArray(
        sendBuffer->Get() + kAnswerHeaderSize, kBufferSize - kAnswerHeaderSize);
    writeAnswerHeader(sendBuffer->Get(), payloadLength);
    numBytesToWrite = payloadLength + kAnswerHeaderSize;
    state = State::Sending;
}

void TcpConnection::sendAnswer() {
    const ssize_t result = sendWithoutSignal(socket, sendBuffer->Get(), numBytesToWrite);
    if (result == -1) {
        handleSendError(errno);
    } else if (result < 0) {
        loggingService->Log(LogLevelWarning,
                            "Warning@TcpConnection::ProcessEvents : send() : result < 0 (" +
                                std::to_string(result) + ")");
        closeSocket();
    } else if (result == 0) {
        loggingService->Log(LogLevelWarning,
                            "Warning@TcpConnection::ProcessEvents : send() : socket == 0");
    } else {
        handleSentBytes(static_cast<std::uint64_t>(result));
    }
}

void TcpConnection::handleSendError(int error) {
    switch (error) {
    case EAGAIN:
        logVerbose("send() would block.");
        return;
    case EBADF:
    case EINTR:
    case ENOMEM:
    case ENOTSOCK:
    case ECONNRESET:
    case ENOTCONN:
    case ECONNREFUSED:
    // A client or the network can cause these at any time.
    case EPIPE:
    case ETIMEDOUT:
    case EHOSTUNREACH:
    case EHOSTDOWN:
    case ENETUNREACH:
    case ENETDOWN:
    case ECONNABORTED:
        closeSocket();
        return;
    default:
        if (hasEnded()) {
            closeSocket();
            return;
        }
        // Users know this line by the name of the receive call.
        loggingService->Log(LogLevelError, "Error@TcpConnection::ProcessEvents : recv() : " +
                                               utilities->GetSocketErrorMsg(error));
    }
}

// When the network has ended a connection, the error comes from the last message about it, which
// anybody can send.
bool TcpConnection::hasEnded() const {
    tcp_info info{};
    socklen_t length = sizeof(info);
    return ::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 &&
           info.tcpi_state == TCP_CLOSE;
}

void TcpConnection::handleSentBytes(std::uint64_t sent) {
    logVerbose("send() sent data");
    if (sent == numBytesToWrite) {
        state = State::Receiving;
        if (outBuffer->GetNumReadBytesAvailable() == 0) {
            outBuffer->ResetBuffer();
        }
    } else if (sent < numBytesToWrite) {
        // Clients rely on this remainder: `sent` counts the frame header too, and the rest has no
        // header.
        outBuffer->RestoreReadPos();
        outBuffer->MoveReadPosForward(sent);
        numBytesToWrite = outBuffer->ReadByteArray(sendBuffer->Get(), kBufferSize);
    } else {
        loggingService->Log(
            LogLevelError,
            "Error@TcpConnection::ProcessEvents : send() : result > numBytesToWrite : result:" +
                std::to_string(sent) + " numBytesToWrite:" + std::to_string(numBytesToWrite));
    }
}

void TcpConnection::closeSocket() {
    if (::close(socket) == -1) {
        const int error = errno;
        loggingService->Log(LogLevelWarning, "Warning@TcpConnection::closeSocket : socketError" +
                                                 std::to_string(error) + " " +
                                                 utilities->GetSocketErrorMsg(error));
    }
    socket = -1;
    readyForCleanup = true;
}

void TcpConnection::logVerbose(const char* detail) const {
    logIfEnabled(loggingService, LogLevelVerbose,
                 "Verbose@TcpConnection::ProcessEvents : ", detail);
}
