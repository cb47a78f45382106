#pragma once

#include "e2e/EndToEndTest.h"
#include "e2e/ToolRun.h"

// A flight in real time for the tool.
class ToolTest : public EndToEndTest {
protected:
    ToolTest() { fly(); }

    void fly(const std::string& framesPerSecond = "200");
};
