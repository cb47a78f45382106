#include "common/LogMessage.h"

std::string logMessage(std::initializer_list<LogMessagePart> parts) {
    std::size_t length = 0;
    for (const LogMessagePart& part : parts) {
        length += part.Text().size();
    }
    std::string message;
    message.reserve(length);
    for (const LogMessagePart& part : parts) {
        message += part.Text();
    }
    return message;
}
