#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "support/Bytes.h"

// The identification of the protocol, which begins a request.
inline const Bytes kVelmar{0x55, 0x66, 0x77, 0x88};

struct VelmarValueType {
    enum : std::uint32_t { Int = 1, Float = 2, Byte = 3, IntArray = 4, FloatArray = 5 };
};
// Any other value ends the command, too.
struct VelmarAction {
    enum : std::uint8_t { Once = 1, Begin = 2, End = 3 };
};

// The packets of a Velmar client, independent of the plugin's own code, without the protocol's
// identification.
Bytes registerDataref(std::uint32_t id, std::uint32_t type, std::uint32_t elements,
                      const std::string& name);
Bytes unregisterDataref(std::uint32_t id);
Bytes registerCommand(std::uint32_t id, const std::string& name);
Bytes unregisterCommand(std::uint32_t id);
Bytes readDataref(std::uint32_t id);
// The packet has the length before `value`.
Bytes writeDataref(std::uint32_t id, const Bytes& value);
Bytes runCommand(std::uint32_t id, std::uint8_t action);
Bytes pollCommandStates();
// The identification, and the packets.
Bytes velmarRequest(std::initializer_list<Bytes> packets);
