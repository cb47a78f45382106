#include "support/VelmarMessages.h"

namespace {

// A length of one byte, and the text without a terminator.
Bytes shortText(const std::string& text) {
    return join({{static_cast<unsigned char>(text.size())}, Bytes(text.begin(), text.end())});
}

} // namespace

Bytes registerDataref(std::uint32_t id, std::uint32_t type, std::uint32_t elements,
                      const std::string& name) {
    return join({u32(1), u32(id), u32(type), u32(elements), shortText(name)});
}

Bytes unregisterDataref(std::uint32_t id) {
    return join({u32(2), u32(id)});
}

Bytes registerCommand(std::uint32_t id, const std::string& name) {
    return join({u32(3), u32(id), shortText(name)});
}

Bytes unregisterCommand(std::uint32_t id) {
    return join({u32(4), u32(id)});
}

Bytes readDataref(std::uint32_t id) {
    return join({u32(5), u32(id)});
}

Bytes writeDataref(std::uint32_t id, const Bytes& value) {
    return join({u32(6), u32(id), u32(static_cast<std::uint32_t>(value.size())), value});
}

Bytes runCommand(std::uint32_t id, std::uint8_t action) {
    return join({u32(7), u32(id), {action}});
}

Bytes pollCommandStates() {
    return u32(8);
}

Bytes velmarRequest(std::initializer_list<Bytes> packets) {
    return join({kVelmar, join(packets)});
}
