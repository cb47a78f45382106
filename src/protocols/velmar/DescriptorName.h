#pragma once

#include <string>

class ILoggingService;
class IRingBuffer;

// Reads the name that ends a descriptor: its length as a uint8, which must be in the buffer, and
// that many bytes without a terminator.
//
// Fewer bytes than announced are reported at LogLevelError under `className`, which ends the
// process: a descriptor must arrive whole.
std::string readDescriptorName(IRingBuffer* in, ILoggingService* log, const char* className);
