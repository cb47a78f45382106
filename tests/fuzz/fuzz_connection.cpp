// Clients of the real server over loopback, as a script: what they send in which fragments, how
// they leave, and which socket calls fail.

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "fuzz/AllocationLimit.h"
#include "fuzz/FuzzClient.h"
#include "fuzz/FuzzWorld.h"
#include "fuzz/NarrowFactory.h"
#include "fuzz/ScriptMutator.h"
#include "network/TcpServer.h"
#include "protocols/ProtocolFactory.h"
#include "support/Deadline.h"
#include "support/PrivateNetwork.h"
#include "support/SocketFaults.h"

namespace {

constexpr std::size_t kClients = 3;
// Enough to accept all waiting clients, and to receive from and answer the last.
constexpr int kTicksToSettle = 8;
// Less than libFuzzer waits for an input, so that the finding says what is wrong.
constexpr std::chrono::seconds kKernelDelay{5};

const Bytes kVersionRequest = fromHex("11 22 33 44 B1 6B 00 B5");
const Bytes kVersionAnswer = fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00");

// The server in a world of its own, with its clients.
class Flight final {
public:
    explicit Flight(std::size_t inputSize) { world.logger.SetLogLevelFor(inputSize); }

    void Play(const Script& script) {
        isListening = server.Init();
        for (const Step& step : script) {
            play(step);
        }
        tick(kTicksToSettle);
        if (!faulted) {
            requireService();
        }
    }

private:
    void play(const Step& step) {
        FuzzClient& client = clients[step.argument % kClients];
        switch (step.kind) {
        case Step::Kind::Send:
            client.Send(step.bytes);
            break;
        case Step::Kind::Tick:
            tick(1);
            break;
        case Step::Kind::Receive:
            client.Receive();
            break;
        case Step::Kind::Leave:
            leave(clients[step.argument / 4 % kClients], step.argument % 4);
            break;
        case Step::Kind::Fault:
            plan(step.argument);
            break;
        default:
            world.Play(step);
            break;
        }
    }

    void tick(int count) {
        for (int i = 0; i < count && isListening; ++i) {
            server.ProcessEvents();
        }
    }

    void leave(FuzzClient& client, int manner) {
        switch (manner) {
        case 0:
            client.Close();
            break;
        case 1:
            client.Reset();
            break;
        case 2:
            client.HalfClose();
            break;
        // The plugin stops and starts again; doing either twice changes nothing.
        default:
            server.Cleanup();
            server.Cleanup();
            isListening = server.Init() && server.Init();
            break;
        }
    }

    void plan(std::uint8_t argument) {
        static constexpr std::array kReceiveErrors = {EINTR, ECONNRESET, EAGAIN, EBADF};
        static constexpr std::array kQuietSendErrors = {EAGAIN, EBADF, ECONNRESET, ENOMEM};
        faulted = true;
        const std::size_t detail = argument / 8U;
        switch (argument % 8) {
        case 0:
            faults.Fail(SocketCall::Receive, kReceiveErrors[detail % kReceiveErrors.size()]);
            break;
        case 1:
            faults.Fail(SocketCall::Send, kQuietSendErrors[detail % kQuietSendErrors.size()]);
            break;
        case 2:
            faults.ShortenSend(detail + 1);
            break;
        case 3:
            planServerFault(detail);
            break;
        case 4:
            // Nothing taken, and a result that no system should give.
            faults.Return(SocketCall::Send, detail % 2 == 0 ? 0 : -2);
            break;
        case 5:
            world.logger.Allow("Error@NetworkResources::Cleanup : ");
            faults.Fail(SocketCall::Close, EIO);
            break;
        case 6:
            AllocationLimit::RefuseNextBuffer();
            break;
        default:
            faults.Fail(SocketCall::Accept, detail % 2 == 0 ? EAGAIN : ECONNRESET);
            break;
        }
        // After a partial send the rest is taken from after the end of a short payload.
        world.logger.Allow(
            "Error@RingBuffer::MoveReadPosForward : GetNumReadBytesAvailable() < amount");
    }

    void planServerFault(std::size_t detail) {
        switch (detail % 7) {
        case 0:
            world.logger.Allow("Error@TcpConnection::ProcessEvents : recv() : ");
            faults.Fail(SocketCall::Send, EPIPE);
            break;
        case 1:
            world.logger.Allow(
                "Error@TcpConnection::ProcessEvents : send() : result > numBytesToWrite : result:");
            faults.Return(SocketCall::Send, 1L << 40);
            break;
        case 2:
            world.logger.Allow("Error@NetworkResources::ProcessEvents : accept() : ");
            faults.Fail(SocketCall::Accept, EMFILE);
            break;
        case 3:
            world.logger.Allow("Error@TcpServer::SetSocketDontLinger : setsockopt() : ");
            // When it starts again, its port is refused because of its former connections.
            world.logger.Allow("Error@TcpServer::Init : bind() : ");
            faults.Fail(SocketCall::SetOption, EINVAL);
            break;
        case 4:
            world.logger.Allow("Error@TcpServer::Init : socket() : ");
            faults.Fail(SocketCall::Socket, EMFILE);
            break;
        case 5:
            world.logger.Allow("Error@TcpServer::Init : bind() : ");
            faults.Fail(SocketCall::Bind, EADDRINUSE);
            break;
        // Another program listens on the port: the process goes on, without a server.
        default:
            faults.Fail(SocketCall::Listen, EADDRINUSE);
            break;
        }
    }

    // Whatever went before, one more client is served, once. Only the kernel may take its time to
    // connect the client and to carry the bytes.
    void requireService() {
        FuzzClient last;
        bool sent = false;
        driveUntil([&] { sent = sent || last.Send(kVersionRequest); },
                   [&] { return sent && last.IsDelivered(); }, kKernelDelay);
        for (int i = 0; i < kTicksToSettle && !last.CanReceive(); ++i) {
            tick(1);
        }
        driveUntil([] {}, [&] { return last.CanReceive(); }, kKernelDelay);
        // Another answer would come now.
        tick(1);
        const Bytes answer = last.Receive();
        if (answer != kVersionAnswer) {
            std::fprintf(stderr, "a client is not served any more; it got [%s]\n",
                         toHex(answer).c_str());
            std::abort();
        }
    }

    FuzzWorld world{endsOfAnyProtocol()};
    NarrowFactory narrowFactory{world.factory, &world.logger};
    SocketFaults faults;
    TcpServer server{&world.logger, &world.utilities, &narrowFactory};
    std::array<FuzzClient, kClients> clients;
    bool isListening = false;
    bool faulted = false;
};

void abortOnSignal(int /*signal*/) {
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    enterPrivateNetwork();
    // It would kill the simulator, so it is a finding.
    std::signal(SIGPIPE, abortOnSignal);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Script script = parseScript(data, size);
    Flight flight(size);
    const AllocationLimit limit;
    try {
        flight.Play(script);
    } catch (const DocumentedEnd&) {
        // The process would have ended.
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    return ScriptMutator(&MessageMaker::Request).Mutate(data, size, maxSize, seed);
}
