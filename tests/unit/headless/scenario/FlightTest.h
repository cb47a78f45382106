#pragma once

#include <string>

#include <gtest/gtest.h>

#include "headless/scenario/Flight.h"
#include "headless/scenario/Statement.h"
#include "support/TemporaryDirectory.h"

// The fake plugin in a paused session: frames run as soon as they are asked for, ten a second.
class FlightTest : public ::testing::Test {
protected:
    FlightTest() { session.StartPlugins(); }

    headless::SessionOptions options() const {
        headless::SessionOptions options;
        options.plugins = {FAKE_PLUGIN};
        options.logFile = folder.Path("Log.txt");
        options.framesPerSecond = 10;
        options.paused = true;
        return options;
    }

    std::string say(const std::string& line) {
        return headless::readStatement(line).execute(flight);
    }
    // What is said when something is not as it was expected.
    std::string failureOf(const std::string& line) {
        try {
            return "no failure, but: " + say(line);
        } catch (const headless::ExpectationFailed& failure) {
            return failure.what();
        }
    }
    std::string errorOf(const std::string& line) {
        try {
            return "no error, but: " + say(line);
        } catch (const std::exception& error) {
            return error.what();
        }
    }
    std::int64_t frames() const { return session.Statistics().Frames(); }

    TemporaryDirectory folder;
    headless::Session session{options()};
    bool interrupted = false;
    headless::Flight flight{session, [this] {
                                if (!interrupted) {
                                    session.RunFrame();
                                }
                                return !interrupted;
                            }};
};
