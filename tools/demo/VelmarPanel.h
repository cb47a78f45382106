#pragma once

#include "tools/demo/TcpClient.h"
#include "tools/demo/VelmarWire.h"

#include <cstdint>
#include <string>
#include <vector>

namespace demo {

// A line of the table: a name, what went in, what came back, and how.
struct ShownValue {
    std::string name{};
    std::string sent{};
    std::string received{};
    std::string way{};
};

// The second client of the demo: a gauge that speaks Velmar on a connection of its own.
//
// It reads flight values by number, counts up an int that the plugin shares with everybody, and
// watches the command that the first client presses. NetworkError and WireError end it. Borrows
// the connection.
class VelmarPanel final {
public:
    explicit VelmarPanel(TcpClient& connection);

    void Register();

    // Sends the next request; its answer is taken by Receive. In between the other client may
    // have its turn.
    void Send();
    void Receive();

    const std::vector<ShownValue>& Values() const { return values; }

private:
    TcpClient& client;
    std::int32_t counter = 0;
    std::vector<ShownValue> values;
};

} // namespace demo
