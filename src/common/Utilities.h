#pragma once

#include <map>
#include <string>

#include "common/IUtilities.h"

// The one implementation of IUtilities.
//
// The error texts are keyed by Windows Sockets codes on every platform; most of this system's own
// error numbers are therefore reported by number only. Users search for these texts.
class Utilities final : public IUtilities {
public:
    Utilities();
    Utilities(const Utilities&) = delete;
    Utilities& operator=(const Utilities&) = delete;

    std::string GetSocketErrorMsg(int code) override;
    std::int64_t GetTimeStampMs() override;

private:
    const std::map<int, std::string> socketErrorTexts;
};
