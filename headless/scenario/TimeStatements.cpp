#include <cstdint>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "headless/scenario/Condition.h"
#include "headless/scenario/Statements.h"

namespace headless {

namespace {

// Waits until the condition holds.
void waitUpTo(double seconds, const Condition& condition, Flight& flight) {
    std::optional<std::string> otherwise;
    flight.RunFor(seconds, [&] {
        otherwise = condition.Otherwise(flight.Session().Simulator().Datarefs());
        return !otherwise.has_value();
    });
    if (otherwise.has_value() && !flight.HasEnded()) {
        std::ostringstream failure;
        failure << "expected " << condition.Text() << " after at most " << seconds << " s, got "
                << *otherwise;
        throw ExpectationFailed(failure.str());
    }
}

// "wait up to 10s until CONDITION", after its first two words.
Statement readWaitUntil(Arguments& arguments) {
    const double seconds = arguments.Take("to") ? arguments.TakeSeconds() : 0.0;
    if (!arguments.Take("until")) {
        throw std::invalid_argument("the form is \"wait up to 10s until NAME == VALUE\"");
    }
    const Condition condition(arguments);
    return checking(arguments,
                    [seconds, condition](Flight& flight) { waitUpTo(seconds, condition, flight); });
}

std::int64_t takeFrameCount(Arguments& arguments) {
    const auto count = arguments.TakeNumber<std::int64_t>("the number of frames");
    if (count < 0) {
        throw std::invalid_argument("the number of frames is negative");
    }
    return count;
}

std::string runFrames(std::int64_t count, Flight& flight) {
    for (std::int64_t i = 0; i < count && flight.RunFrame(); ++i) {
    }
    return "frame " + std::to_string(flight.Session().Statistics().Frames());
}

Statement setPaused(Arguments& arguments, bool paused) {
    return acting(arguments, [paused](Flight& flight) { flight.Session().SetPaused(paused); });
}

} // namespace

Statement readWait(Arguments& arguments) {
    if (arguments.Take("up")) {
        return readWaitUntil(arguments);
    }
    const double seconds = arguments.TakeSeconds();
    return acting(arguments,
                  [seconds](Flight& flight) { flight.RunFor(seconds, [] { return false; }); });
}

Statement readFrames(Arguments& arguments) {
    if (arguments.AtEnd()) {
        return reporting(arguments, [](Flight& flight) {
            return "frames " + std::to_string(flight.Session().Statistics().Frames());
        });
    }
    const std::int64_t count = takeFrameCount(arguments);
    Statement statement =
        reporting(arguments, [count](Flight& flight) { return runFrames(count, flight); });
    statement.purpose = Statement::Purpose::Act;
    return statement;
}

Statement readStep(Arguments& arguments) {
    if (arguments.AtEnd()) {
        throw std::invalid_argument("the number of frames is missing");
    }
    Statement statement = readFrames(arguments);
    statement.execute = [frames = statement.execute](Flight& flight) {
        if (!flight.Session().IsPaused()) {
            throw std::invalid_argument("frames are stepped while paused");
        }
        return frames(flight);
    };
    return statement;
}

Statement readPause(Arguments& arguments) {
    return setPaused(arguments, true);
}

Statement readResume(Arguments& arguments) {
    return setPaused(arguments, false);
}

Statement readRate(Arguments& arguments) {
    const auto rate = arguments.TakeNumber<double>("the number of frames per second");
    if (!(rate >= SessionOptions::kFewestFramesPerSecond &&
          rate <= SessionOptions::kMostFramesPerSecond)) {
        throw std::invalid_argument("a rate is 0.1 to 100000 frames per second");
    }
    return acting(arguments, [rate](Flight& flight) { flight.Session().SetFramesPerSecond(rate); });
}

} // namespace headless
