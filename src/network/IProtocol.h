#pragma once

class IRingBuffer;

// A wire protocol handler. Each connection has its own instance of every protocol, so protocol
// state never leaks between clients.
class IProtocol {
public:
    virtual ~IProtocol() = default;

    // The 32-bit value that begins every request for this protocol; a constant per class.
    virtual unsigned int GetProtocolIdentification() = 0;

    // Consumes one message from `in`, after its identification, and writes the whole answer to
    // `out`. A negative result means that the message is not complete: `in` can be read again, and
    // Feed is called again when more bytes have arrived. Zero or more means handled: the content of
    // `out`, which may be empty, is sent as one answer.
    virtual int Feed(IRingBuffer* in, IRingBuffer* out) = 0;

    // A simulator command that this instance subscribed to as `commandId` changed its phase
    // (0 begin, 1 continue, 2 end). Returns 1 to let the command go on to the simulator.
    virtual int HandleCommand(unsigned int commandId, int phase) = 0;
};
