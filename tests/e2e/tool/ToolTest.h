#pragma once

#include <string>

#include "e2e/EndToEndTest.h"
#include "e2e/ToolRun.h"

// A flight in real time for the tool.
class ToolTest : public EndToEndTest {
protected:
    ToolTest() { fly(); }

    void fly(const std::string& framesPerSecond = "200");

    // The simulator alone, without a client, in which `statements` are carried out. Call it after
    // the flight. Returns what it prints, which begins with "frames" if all holds.
    static std::string play(const std::string& options, const std::string& statements);
};
