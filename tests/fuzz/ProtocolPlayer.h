#pragma once

#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzWorld.h"
#include "network/IProtocol.h"

// Plays a script with one protocol and no connection around it: a Send puts its bytes after those
// that are left and feeds the protocol, a Tick feeds it once more. The answers are dropped. Both
// buffers are small, so that they run out of room, too.
//
// Ends early if the process or the connection would. Aborts when a result of Feed is negative or
// when Feed reports nothing consumed and yet took bytes from a `keepsUnconsumed` protocol.
void playProtocol(IProtocol& protocol, FuzzWorld& world, const Script& script,
                  bool keepsUnconsumed);
