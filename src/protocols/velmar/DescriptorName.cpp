#include "protocols/velmar/DescriptorName.h"

#include <array>
#include <cstdint>

#include "common/ILoggingService.h"
#include "network/IRingBuffer.h"

namespace {

constexpr std::size_t kNameBufferSize = 256;

void reportShortName(ILoggingService* log, const char* className, std::uint8_t length,
                     unsigned long received) {
    // The line has the length as a raw byte; users search for it that way.
    log->Log(LogLevelError,
             std::string("FATAL@") + className + "::FromStream : tried to read string with " +
                 static_cast<char>(length) + " bytes, got " + std::to_string(received));
}

} // namespace

std::string readDescriptorName(IRingBuffer* in, ILoggingService* log, const char* className) {
    std::array<unsigned char, kNameBufferSize> buffer{};
    const std::uint8_t length = in->ReadUInt8();
    // The ring buffer takes a request for no bytes as an error.
    if (length > 0) {
        const unsigned long received = in->ReadByteArray(buffer.data(), length);
        if (received < length) {
            reportShortName(log, className, length, received);
        }
    }
    return {buffer.begin(), buffer.begin() + length};
}
