#pragma once

#include "tools/orvane/dump/Message.h"
#include "tools/orvane/dump/TarnelDefinitions.h"
#include "tools/orvane/dump/TarnelRequest.h"
#include "tools/orvane/dump/TcpSegment.h"

namespace orvane::tool::dump {

// Whether the payload is an output stream of exactly these definitions.
bool isOutputStream(ByteView payload, const TarnelDefinitions& declared);

// An output stream does not describe itself; it is read by what was declared. One that does not fit
// is marked as odd and shown as bytes.
Message readTarnelAnswer(ByteView payload, TarnelRequest::Answer expected,
                         const TarnelDefinitions& declared);

} // namespace orvane::tool::dump
