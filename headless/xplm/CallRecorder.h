#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace headless {

// Why the simulator did not do what a plugin asked.
enum class Refusal {
    NullHandle,
    UnknownHandle,
    StaleHandle,
    UnknownName,
    NullText,
    WrongType,
    ReadOnly,
    NameTaken,
    Ordered,
    AlreadyRegistered,
    NotRegistered,
    UnbalancedEnd,
    UnknownPlugin,
    // The simulator did it anyway.
    WrongMoment,
    Count
};

// One call that a plugin made: the function, its arguments as text (names, values, joined by ", ")
// and the handle that it used or got, or null.
struct RecordedCall {
    std::string function;
    std::string arguments;
    const void* handle = nullptr;
};

struct RefusedCall {
    Refusal reason = Refusal::Count;
    std::string function;
    std::string detail;
};

// Records what plugins asked of the simulator.
//
// The ordered list of all calls is kept only while recording is enabled, so that it does not grow
// in long runs. Refused calls are always counted, and the last kRecentRefusals of them are kept.
// Plugins may call, and be refused, on threads of their own.
class CallRecorder final {
public:
    static constexpr std::size_t kRecentRefusals = 64;

    void Enable() { enabled = true; }
    void Disable() { enabled = false; }
    bool IsEnabled() const { return enabled; }

    // Forgets calls and refusals.
    void Clear();

    template <class... Arguments>
    void Record(const char* called, const void* handle, const Arguments&... arguments) {
        if (enabled) {
            keep({called, describe(arguments...), handle});
        }
    }

    // The SDK function that a plugin is in, for refusals. The pointer is kept.
    void Enter(const char* sdkFunction) { function = sdkFunction; }
    const char* Entered() const { return function; }

    void Refuse(Refusal reason, const char* refusing, const char* detail);
    void Refuse(Refusal reason, const char* detail) { Refuse(reason, function, detail); }
    // Called for every refusal, after it is counted.
    void AddObserver(std::function<void(const RefusedCall&)> observer) {
        observers.push_back(std::move(observer));
    }

    const std::vector<RecordedCall>& Calls() const { return calls; }
    // The calls of one function, in order.
    std::vector<RecordedCall> CallsOf(const std::string& function) const;

    // In words: "no such handle".
    static const char* Describe(Refusal reason);

    std::size_t Refusals(Refusal reason) const;
    std::size_t NullHandleCalls() const { return Refusals(Refusal::NullHandle); }
    const std::deque<RefusedCall>& RecentRefusals() const { return recentRefusals; }

private:
    void keep(RecordedCall call);

    template <class... Arguments>
    static std::string describe(const Arguments&... arguments) {
        std::ostringstream text;
        [[maybe_unused]] const char* separator = "";
        ((text << separator << arguments, separator = ", "), ...);
        return text.str();
    }

    std::mutex mutex;
    bool enabled = false;
    const char* function = "";
    std::vector<std::function<void(const RefusedCall&)>> observers;
    std::vector<RecordedCall> calls;
    std::array<std::size_t, static_cast<std::size_t>(Refusal::Count)> counts{};
    std::deque<RefusedCall> recentRefusals;
};

} // namespace headless
