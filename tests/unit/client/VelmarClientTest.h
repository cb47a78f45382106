#pragma once

#include "orvane/velmar/Client.h"
#include "unit/client/ScriptedClientTest.h"

// The dataref a/b as a float, and the command c/defghi, under the numbers 1 and 2.
inline const ScriptedServer::Turn kRegisterFloat{
    "55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 03 61 2F 62",
    "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"};
inline const ScriptedServer::Turn kRegisterCommand{
    "55 66 77 88 03 00 00 00 02 00 00 00 08 63 2F 64 65 66 67 68 69",
    "0C 00 00 00 03 00 00 00 02 00 00 00 01 00 00 00"};
inline const ScriptedServer::Turn kRead{
    "55 66 77 88 05 00 00 00 01 00 00 00",
    "14 00 00 00 05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F"};
inline const ScriptedServer::Turn kWrite{
    "55 66 77 88 06 00 00 00 01 00 00 00 04 00 00 00 00 00 00 40",
    "0C 00 00 00 06 00 00 00 01 00 00 00 01 00 00 00"};
inline const ScriptedServer::Turn kRun{"55 66 77 88 07 00 00 00 02 00 00 00 01", "00 00 00 00"};
inline constexpr const char* kTorn = "00 00 00 00";

class VelmarClientTest : public ScriptedClientTest {
protected:
    void registerAll(orvane::velmar::Client& client) const {
        client.registerDataref({"a/b", orvane::velmar::Type::Float});
        client.registerCommand("c/defghi");
    }
};
