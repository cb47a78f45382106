// The profiles of `orvane drive`: whatever a user writes is read, or reported with its place.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/MessageMaker.h"
#include "tools/orvane/drive/ProfileReader.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using orvane::tool::Problem;
using orvane::tool::Problems;
using orvane::tool::Profile;
using orvane::tool::ProfileInput;
using orvane::tool::ProfileOutput;

constexpr std::array kLines = {"[connection]",
                               "host = \"sim\"",
                               "port = 48000",
                               "rate = 50",
                               "[[input]]",
                               "[[output]]",
                               "name = \"a\"",
                               "name = \"b\"",
                               "dataref = \"sim/x\"",
                               "command = \"kyr/c\"",
                               "type = \"float\"",
                               "type = \"int\"",
                               "element = 1",
                               "unit = \"kt\"",
                               "count = 1000000",
                               "first = 2",
                               "action = 3",
                               "fixed = 1",
                               "fixed = -0.5",
                               "hold = true",
                               "repeat_ms = 9",
                               "scaling = { float_range = [-1, 1] }",
                               "scaling = { int_range = [-2147483648, 2147483647] }",
                               "scaling = { datarefs = [\"a\", \"b\"], element = 1 }",
                               "wave = { form = \"square\", period = 0.01, phase = 1 }",
                               "wave = { range = [0, 0.5] }",
                               "steps = { values = [0, 1], seconds = 0.01 }",
                               "skip = { when_value = 0 }",
                               "skip = { while_zero = \"z\", type = \"int\", element = 2 }"};

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void checkProblems(const Problems& problems, std::string_view text) {
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    for (const Problem& problem : problems) {
        require(problem.line >= 1 && problem.line <= lines, "a problem is outside of the file");
        require(problem.column >= 1, "a problem has no column");
        require(!problem.reason.empty(), "a problem has no reason");
    }
}

// What a session relies on.
void checkProfile(const Profile& profile) {
    require(profile.rate > 0, "the rate is not positive");
    std::set<std::string> names;
    for (const ProfileInput& input : profile.inputs) {
        require(names.insert(input.name).second, "an input is there twice");
        require(profile.definitions.declares(input.action), "an action is not declared");
        if (input.motion) {
            orvane::tool::valueAt(*input.motion, 86'400.5);
        }
    }
    require(profile.outputs.size() == profile.definitions.outputs().size(),
            "an output has no name");
    std::set<orvane::tarnel::OutputId> ids;
    for (const ProfileOutput& output : profile.outputs) {
        require(ids.insert(output.id).second, "two outputs have one number");
    }
    require(profile.definitions.answerSize() <= std::size_t{64} << 20U, "answers are too large");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    Problems problems;
    const Profile profile = orvane::tool::readProfile(text, problems);
    checkProblems(problems, text);
    if (problems.empty()) {
        checkProfile(profile);
    }
    return 0;
}

// Half of the time, inserts a valid line somewhere.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    MessageMaker maker(seed);
    std::string text(data, data + size);
    const std::string line = std::string(kLines[maker.Below(kLines.size())]) + "\n";
    if (maker.Below(2) == 0 || text.size() + line.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    const std::size_t lineEnd = text.find('\n', maker.Below(size + 1));
    text.insert(lineEnd == std::string::npos ? text.size() : lineEnd + 1, line);
    std::copy(text.begin(), text.end(), data);
    return text.size();
}
