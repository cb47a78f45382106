#pragma once

#include <string>

#include "common/IUtilities.h"

// A clock that stands still until the test moves it, and error texts that name their number.
class FakeUtilities final : public IUtilities {
public:
    std::string GetSocketErrorMsg(int code) override {
        return "text of error " + std::to_string(code);
    }

    std::int64_t GetTimeStampMs() override {
        ++timeStampsTaken;
        return nowMs;
    }

    std::int64_t nowMs = 1'000'000;
    int timeStampsTaken = 0;
};
