#pragma once

#include <chrono>
#include <exception>
#include <string>

#include <gtest/gtest.h>

#include "orvane/Options.h"
#include "support/ScriptedServer.h"
#include "support/TextOf.h"

// A client of a scripted server.
class ScriptedClientTest : public testing::Test {
protected:
    using Turn = ScriptedServer::Turn;
    using End = ScriptedServer::End;

    static orvane::Options optionsFor(const ScriptedServer& server,
                                      orvane::OnLoss onLoss = orvane::OnLoss::Throw) {
        return {.port = server.Port(),
                .timeout = std::chrono::milliseconds(20'000),
                .onLoss = onLoss,
                .backoff = {.firstDelay = std::chrono::milliseconds(1)},
                .releaseWithin = std::chrono::milliseconds(20'000)};
    }
};

inline ScriptedServer::Turn answeredWith(const ScriptedServer::Turn& turn, const char* answer) {
    return {turn.request, answer};
}
