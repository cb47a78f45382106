#include "headless/xplm/CallRecorder.h"

#include <algorithm>
#include <iterator>

namespace headless {

void CallRecorder::Clear() {
    calls.clear();
    counts.fill(0);
    recentRefusals.clear();
}

void CallRecorder::Refuse(Refusal reason, const char* function, const char* detail) {
    ++counts.at(static_cast<std::size_t>(reason));
    if (recentRefusals.size() == kRecentRefusals) {
        recentRefusals.pop_front();
    }
    recentRefusals.push_back({reason, function, detail});
}

std::vector<RecordedCall> CallRecorder::CallsOf(const std::string& function) const {
    std::vector<RecordedCall> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [&](const RecordedCall& call) { return call.function == function; });
    return found;
}

std::size_t CallRecorder::Refusals(Refusal reason) const {
    return counts.at(static_cast<std::size_t>(reason));
}

} // namespace headless
