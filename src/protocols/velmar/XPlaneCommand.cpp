#include "protocols/velmar/XPlaneCommand.h"

#include <cstdint>
#include <utility>

#include "common/ILoggingService.h"
#include "network/IRingBuffer.h"
#include "protocols/velmar/DescriptorName.h"

namespace {

// As many as a dataref's descriptor needs, although a command's is shorter: clients know that a
// request must not end with a short command name.
constexpr unsigned long kSmallestDescriptor = 13;

// The class name in the log lines of commands; users search for it.
constexpr const char* kReportedClass = "VelmarDataRef";

} // namespace

XPlaneCommand::XPlaneCommand(unsigned int identifier, std::string name)
    : identifier(identifier), name(std::move(name)) {}

XPlaneCommand* XPlaneCommand::FromStream(IRingBuffer* in, ILoggingService* log) {
    if (in->GetNumReadBytesAvailable() < kSmallestDescriptor) {
        log->Log(LogLevelError,
                 "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref");
    }
    const std::uint32_t id = in->ReadUInt32();
    return new XPlaneCommand(id, readDescriptorName(in, log, kReportedClass));
}

bool XPlaneCommand::FindReference() {
    command = XPLMFindCommand(name.c_str());
    return command != nullptr;
}

void XPlaneCommand::Once() {
    XPLMCommandOnce(command);
}

void XPlaneCommand::Begin() {
    XPLMCommandBegin(command);
}

void XPlaneCommand::End() {
    XPLMCommandEnd(command);
}

unsigned int XPlaneCommand::GetId() const {
    return identifier;
}

std::string XPlaneCommand::GetName() const {
    return name;
}
