#pragma once

#include <vector>

#include "support/Bytes.h"

// What one side of a connection sends in one go.
struct Turn {
    bool isToPlugin = true;
    Bytes bytes{};
};

// A request for each message, and an answer that the plugin might give.
std::vector<Turn> conversation(const std::vector<Bytes>& messages, const Bytes& identification);

// For fuzz_conversation: what happens, the number of bytes as two bytes, and the bytes.
Bytes turnsAsScript(const std::vector<Turn>& turns);
// A capture file of a whole connection.
Bytes turnsAsCapture(const std::vector<Turn>& turns);
