#pragma once

#include <chrono>
#include <exception>
#include <string>

#include <gtest/gtest.h>

#include "orvane/Options.h"
#include "support/ScriptedServer.h"

// A client of a scripted server.
class ScriptedClientTest : public testing::Test {
protected:
    using Turn = ScriptedServer::Turn;
    using End = ScriptedServer::End;

    static orvane::Options optionsFor(const ScriptedServer& server,
                                      orvane::OnLoss onLoss = orvane::OnLoss::Throw) {
        orvane::Options options;
        options.port = server.Port();
        options.timeout = std::chrono::milliseconds(20'000);
        options.onLoss = onLoss;
        options.backoff.firstDelay = std::chrono::milliseconds(1);
        options.releaseWithin = std::chrono::milliseconds(20'000);
        return options;
    }

    // The text of the exception that the action throws.
    template <typename Wanted, typename Action>
    static std::string textOf(Action action) {
        try {
            action();
        } catch (const Wanted& error) {
            return error.what();
        } catch (const std::exception& other) {
            return std::string("another error: ") + other.what();
        }
        return "no error";
    }
};

inline ScriptedServer::Turn answeredWith(const ScriptedServer::Turn& turn, const char* answer) {
    return {turn.request, answer};
}
