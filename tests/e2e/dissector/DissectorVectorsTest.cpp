#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCapture.h"
#include "e2e/dissector/Tshark.h"
#include "support/TemporaryDirectory.h"
#include "support/WireVectors.h"

// What Wireshark shows of the requests and answers of tests/vectors: their values, their faults,
// and no other faults.

namespace {

using testing::HasSubstr;

// The columns that are compared, each with its values in order. Texts of numbers are compared as
// numbers.
const std::vector<std::string> kFields{
    "orvane.tarnel.input.action", "orvane.tarnel.input.target", "orvane.tarnel.output.id",
    "orvane.tarnel.output.name",  "orvane.tarnel.item.action",  "orvane.tarnel.item.value",
    "orvane.tarnel.entry.int",    "orvane.tarnel.entry.float",  "orvane.tarnel.entry.command",
    "orvane.tarnel.aircraft.id",  "orvane.velmar.status",       "orvane.velmar.int",
    "orvane.velmar.float",        "orvane.velmar.byte",         "orvane.velmar.state"};

using Row = std::map<std::string, std::vector<std::string>>;

struct DrawnMessage {
    int frame = 0;
    WireStep step;
};

std::vector<std::string> split(const std::string& text, char separator) {
    std::istringstream stream(text);
    std::vector<std::string> parts;
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

void add(Row& row, const std::string& field, const std::string& values) {
    for (const std::string& value : split(values, ',')) {
        row["orvane." + field].push_back(value);
    }
}

std::string normal(const std::string& text) {
    std::size_t used = 0;
    try {
        const bool isHex = text.starts_with("0x");
        const double number = isHex ? static_cast<double>(std::stoul(text, &used, 16))
                                    : static_cast<double>(std::stof(text, &used));
        return used == text.size() ? std::to_string(number) : text;
    } catch (const std::invalid_argument&) {
        return text;
    }
}

void addMeaning(Row& row, const WireWords& words) {
    static const std::map<std::string, std::string> kVelmarValues{{"int", "velmar.int"},
                                                                  {"byte", "velmar.byte"},
                                                                  {"float", "velmar.float"},
                                                                  {"int-array", "velmar.int"},
                                                                  {"float-array", "velmar.float"}};
    const std::string& keyword = words.at(0);
    if (keyword == "input") {
        add(row, "tarnel.input.action", words.at(1));
        add(row, "tarnel.input.target", words.at(3));
    } else if (keyword == "output") {
        add(row, "tarnel.output.id", words.at(1));
        add(row, "tarnel.output.name", words.at(3));
    } else if (keyword == "item") {
        add(row, "tarnel.item.action", words.at(1));
        add(row, "tarnel.item.value", words.at(2));
    } else if (words.at(1) == "poll") {
        for (std::size_t i = 2; i < words.size(); ++i) {
            const std::string state = words[i].substr(words[i].find('=') + 1);
            add(row, "velmar.state", state == "up" ? "0" : state == "down" ? "1" : "2");
        }
    } else if (keyword == "reply") {
        add(row, "velmar.status", words.at(3) == "refused" ? "2" : "1");
    }
    const bool hasValue = words.at(1) == "write" || words.at(1) == "read";
    if (hasValue && words.size() > 4) {
        add(row, kVelmarValues.at(words.at(3)), words.at(4));
    }
}

// A value of an output is in the field of the type that it was declared with.
void addOutputs(Row& row, const WireStep& answer, const WireStep& declared) {
    const std::string aircraft = wordsOf(answer.text).at(1);
    add(row, "tarnel.aircraft.id", aircraft == "none" ? "0x00000000" : aircraft);
    for (const WireWords& value : answer.meaning) {
        for (const WireWords& output : declared.meaning) {
            if (output.at(0) == "output" && output.at(1) == value.at(1)) {
                add(row, "tarnel.entry." + output.at(2).substr(0, output.at(2).find('-')),
                    value.at(2));
            }
        }
    }
}

class DissectorVectorsTest : public testing::Test {
protected:
    DissectorVectorsTest() {
        DrawnCapture capture("vectors.pcap");
        for (const WireVector& vector : readWireVectors()) {
            draw(capture, vector);
        }
        file = capture.Finish();
    }

    // By frame number; empty if there are none.
    std::map<int, Row> rows() const {
        std::vector<std::string> fields{"frame.number"};
        fields.insert(fields.end(), kFields.begin(), kFields.end());
        std::map<int, Row> all;
        for (const std::string& line : fieldsOf(file, fields)) {
            const std::vector<std::string> columns = split(line, '|');
            Row& row = all[std::stoi(columns.at(0))];
            for (std::size_t i = 1; i < columns.size(); ++i) {
                if (!columns[i].empty()) {
                    row[kFields[i - 1]] = split(columns[i], ',');
                }
            }
        }
        return all;
    }

    // By frame number, without the notes.
    std::map<int, std::string> faults() const {
        std::map<int, std::string> all;
        for (const std::string& expert : expertsOf(file)) {
            if (expert.find(" Note: ") == std::string::npos) {
                all[std::stoi(expert)] += expert;
            }
        }
        return all;
    }

    static void expectRow(Row shown, Row expected) {
        for (Row* row : {&shown, &expected}) {
            for (auto& [field, values] : *row) {
                std::transform(values.begin(), values.end(), values.begin(), normal);
            }
        }
        EXPECT_EQ(shown, expected);
    }

    // The log line that ends the process instead of an answer to this request, if there is one.
    std::string endOf(const WireStep& request) const {
        const auto found = ends.find(request.place);
        return found == ends.end() ? "" : found->second;
    }

    TemporaryDirectory directory;
    std::filesystem::path file;
    std::vector<DrawnMessage> messages;

private:
    void draw(DrawnCapture& capture, const WireVector& vector) {
        constexpr int kHandshake = 3;
        capture.Connect();
        frame += kHandshake;
        for (const WireStep& step : vector.steps) {
            constexpr const char* kEnds = "ends ";
            if (step.Is("answer", kEnds)) {
                ends[messages.back().step.place] = step.text.substr(std::string(kEnds).size());
            }
            if (step.bytes.empty()) {
                continue;
            }
            if (step.Is("request")) {
                capture.FromClient(step.bytes);
            } else {
                capture.FromServer(step.bytes);
            }
            messages.push_back({++frame, step});
        }
    }

    std::map<std::string, std::string> ends;
    int frame = 0;
};

TEST_F(DissectorVectorsTest, ShowsWhatTheyMean) {
    const std::map<int, Row> shown = rows();
    WireStep declared;
    for (const auto& [frame, step] : messages) {
        SCOPED_TRACE(step.place);
        if (step.text.starts_with("raw") || step.text.ends_with("torn") ||
            step.Is("answer", "unexpected") || step.Is("answer", "version")) {
            continue;
        }
        Row expected;
        if (step.Is("request", "define")) {
            declared = step;
        }
        if (step.Is("answer", "outputs")) {
            addOutputs(expected, step, declared);
        } else {
            for (const WireWords& words : step.meaning) {
                addMeaning(expected, words);
            }
        }
        ASSERT_TRUE(shown.contains(frame));
        expectRow(shown.at(frame), expected);
    }
}

// A torn request is recognised when it is answered.
TEST_F(DissectorVectorsTest, FindsTheirFaults) {
    const std::map<int, std::string> found = faults();
    WireStep asked;
    for (const auto& [frame, step] : messages) {
        SCOPED_TRACE(step.place);
        asked = step.Is("request") ? step : asked;
        const std::string fault = found.contains(frame) ? found.at(frame) : "";
        if (step.Is("answer") && asked.text.ends_with("torn")) {
            EXPECT_THAT(fault, HasSubstr("a part had not arrived"));
        } else if (!asked.Is("request", "raw")) {
            EXPECT_EQ(fault, "");
        }
    }
}

// It cannot know that a torn request has no rest.
TEST_F(DissectorVectorsTest, ShowsTheLogLineThatEndsTheProcess) {
    const std::map<int, std::string> found = faults();
    int ends = 0;
    for (const auto& [frame, step] : messages) {
        const std::string line = endOf(step);
        if (!line.empty() && !step.text.ends_with("torn")) {
            SCOPED_TRACE(step.place);
            ASSERT_TRUE(found.contains(frame));
            EXPECT_THAT(found.at(frame), HasSubstr("the simulator's process ends with " + line));
            ++ends;
        }
    }
    EXPECT_EQ(ends, 5);
}

} // namespace
