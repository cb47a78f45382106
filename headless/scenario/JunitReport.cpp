#include "headless/scenario/JunitReport.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace headless {

namespace {

using Kind = ScenarioOutcome::Kind;

// XML does not allow control characters, not even escaped.
std::string escaped(std::string_view text) {
    std::string xml;
    for (const char character : text) {
        switch (character) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        case '"':
            xml += "&quot;";
            break;
        default:
            xml += static_cast<unsigned char>(character) < ' ' ? '?' : character;
        }
    }
    return xml;
}

void writeCase(std::ostream& xml, const std::string& name, const ScenarioOutcome& outcome) {
    xml << "    <testcase classname=\"" << escaped(name) << "\" name=\"" << outcome.line->number
        << ": " << escaped(outcome.line->text) << "\" time=\"" << outcome.seconds << '"';
    if (outcome.kind == Kind::Met) {
        xml << "/>\n";
        return;
    }
    xml << ">\n      <" << (outcome.kind == Kind::Failed ? "failure" : "error") << " message=\""
        << escaped(name) << ':' << outcome.line->number << ": " << escaped(outcome.message)
        << "\"/>\n    </testcase>\n";
}

} // namespace

JunitReport::JunitReport(const std::string& reportPath) : path(reportPath), file(path) {
    requireWritten();
}

void JunitReport::requireWritten() const {
    if (!file) {
        throw std::runtime_error(path + ": cannot write the report: " + std::strerror(errno));
    }
}

void JunitReport::Write(const ScenarioRun& run) {
    const std::vector<ScenarioOutcome>& outcomes = run.Outcomes();
    const auto count = [&](Kind kind) {
        return std::count_if(outcomes.begin(), outcomes.end(),
                             [&](const ScenarioOutcome& one) { return one.kind == kind; });
    };
    double seconds = 0.0;
    for (const ScenarioOutcome& outcome : outcomes) {
        seconds += outcome.seconds;
    }
    file << std::fixed << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n"
         << "  <testsuite name=\"" << escaped(run.Scenario().name) << "\" tests=\""
         << outcomes.size() << "\" failures=\"" << count(Kind::Failed) << "\" errors=\""
         << count(Kind::Error) << "\" time=\"" << seconds << "\">\n";
    for (const ScenarioOutcome& outcome : outcomes) {
        writeCase(file, run.Scenario().name, outcome);
    }
    file << "  </testsuite>\n</testsuites>\n" << std::flush;
    requireWritten();
}

} // namespace headless
