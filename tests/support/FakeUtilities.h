#pragma once

#include <functional>
#include <string>

#include "common/IUtilities.h"

// A clock that stands still until the test moves it, and error texts that name their number.
class FakeUtilities final : public IUtilities {
public:
    ~FakeUtilities() override {
        if (onDelete) {
            onDelete();
        }
    }

    std::string GetSocketErrorMsg(int code) override {
        return "text of error " + std::to_string(code);
    }

    std::int64_t GetTimeStampMs() override {
        ++timeStampsTaken;
        return nowMs;
    }

    std::function<void()> onDelete;
    std::int64_t nowMs = 1'000'000;
    int timeStampsTaken = 0;
};
