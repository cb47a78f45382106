#include "headless/xplm/CallRecorder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace headless {

void CallRecorder::Clear() {
    calls.clear();
    counts.fill(0);
    recentRefusals.clear();
}

void CallRecorder::Refuse(Refusal reason, const char* refusing, const char* detail) {
    const RefusedCall refused{reason, refusing, detail};
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ++counts.at(static_cast<std::size_t>(reason));
        if (recentRefusals.size() == kRecentRefusals) {
            recentRefusals.pop_front();
        }
        recentRefusals.push_back(refused);
    }
    for (const auto& observer : observers) {
        observer(refused);
    }
}

void CallRecorder::keep(RecordedCall call) {
    const std::lock_guard<std::mutex> lock(mutex);
    calls.push_back(std::move(call));
}

std::vector<RecordedCall> CallRecorder::CallsOf(const std::string& function) const {
    std::vector<RecordedCall> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [&](const RecordedCall& call) { return call.function == function; });
    return found;
}

const char* CallRecorder::Describe(Refusal reason) {
    static constexpr std::array<const char*, static_cast<std::size_t>(Refusal::Count)> kTexts{
        "null",           "not a handle",       "its owner is gone",
        "unknown name",   "null text",          "another type",
        "read-only",      "the name is taken",  "refused on purpose",
        "known already",  "not registered",     "an end without a beginning",
        "no such plugin", "at the wrong moment"};
    return kTexts.at(static_cast<std::size_t>(reason));
}

std::size_t CallRecorder::Refusals(Refusal reason) const {
    return counts.at(static_cast<std::size_t>(reason));
}

} // namespace headless
