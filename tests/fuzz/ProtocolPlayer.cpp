#include "fuzz/ProtocolPlayer.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "fuzz/AllocationLimit.h"
#include "network/RingBuffer.h"

namespace {

constexpr int kBufferSize = 32 * 1024;

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void feed(IProtocol& protocol, RingBuffer& in, RingBuffer& out, bool keepsUnconsumed) {
    const unsigned long before = in.GetNumReadBytesAvailable();
    const int result = protocol.Feed(&in, &out);
    require(result >= 0, "a negative result of Feed");
    require(!keepsUnconsumed || result > 0 || in.GetNumReadBytesAvailable() == before,
            "bytes consumed by a Feed that reports none");
    out.MoveReadPosForward(out.GetNumReadBytesAvailable());
}

void play(IProtocol& protocol, FuzzWorld& world, const Script& script, bool keepsUnconsumed) {
    RingBuffer in(kBufferSize, &world.logger);
    RingBuffer out(kBufferSize, &world.logger);
    for (const Step& step : script) {
        if (step.kind == Step::Kind::Send) {
            if (step.bytes.size() > in.GetNumWriteBytesAvailable()) {
                return;
            }
            // WriteByteArray promises not to change its source.
            in.WriteByteArray(const_cast<unsigned char*>(step.bytes.data()), step.bytes.size());
        }
        if (step.kind == Step::Kind::Send || step.kind == Step::Kind::Tick) {
            feed(protocol, in, out, keepsUnconsumed);
        } else {
            world.Play(step);
        }
    }
}

} // namespace

void playProtocol(IProtocol& protocol, FuzzWorld& world, const Script& script,
                  bool keepsUnconsumed) {
    const AllocationLimit limit;
    try {
        play(protocol, world, script, keepsUnconsumed);
    } catch (const DocumentedEnd&) {
        // The process would have ended.
    } catch (const std::bad_alloc&) {
        // The connection would have been closed.
    } catch (const std::length_error&) {
    }
}
