#include "protocols/velmar/DescriptorName.h"

#include <array>
#include <cstdint>

#include "common/ILoggingService.h"
#include "network/IRingBuffer.h"

namespace {

constexpr std::size_t kNameBufferSize = 256;

void reportShortName(ILoggingService* log, const char* className, std::uint8_t length,
                     unsigned long received) {
    std::string message = "FATAL@";
    message += className;
    message += "::FromStream : tried to read string with ";
    // The line has the length as a raw byte; users search for it that way.
    message += static_cast<char>(length);
    message += " bytes, got " + std::to_string(received);
    log->Log(LogLevelError, message);
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
