#pragma once

#include <cstdint>
#include <string>

#include "support/Bytes.h"

// The packets of a Velmar client, written to the wire without a look at the plugin's own code and
// without the identification of the protocol that goes before a request.
Bytes registerDataref(std::uint32_t id, std::uint32_t type, std::uint32_t elements,
                      const std::string& name);
Bytes unregisterDataref(std::uint32_t id);
Bytes registerCommand(std::uint32_t id, const std::string& name);
Bytes unregisterCommand(std::uint32_t id);
Bytes readDataref(std::uint32_t id);
// `value` goes with its length in front.
Bytes writeDataref(std::uint32_t id, const Bytes& value);
// 1 once, 2 begin, anything else end.
Bytes runCommand(std::uint32_t id, std::uint8_t action);
Bytes pollCommandStates();
