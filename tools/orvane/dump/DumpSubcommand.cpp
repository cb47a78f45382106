#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/dump/CaptureDecoder.h"
#include "tools/orvane/dump/CaptureFile.h"
#include "tools/orvane/dump/MessageText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvane::tool {

namespace {

using dump::CaptureDecoder;
using dump::CaptureFile;
using dump::Message;
using dump::TimeStyle;

constexpr const char* kDumpFooter =
    "A line per message: time, client, > to the plugin or < from it, what it is, and what the\n"
    "plugin makes of it where that is not plain:\n"
    "  [torn: ...]                not there as a whole when the plugin looked\n"
    "  [unknown: ...]             nobody knows such a thing\n"
    "  [odd: ...]                 whole, but not right\n"
    "  [ends the simulator: ...]  with this line in its log\n"
    "  [missing: ...]             not in the capture\n"
    "A capture does not show when the plugin looked. It is taken to have had what was sent before\n"
    "its answer began. A request is printed when its answer is complete.\n"
    "\n"
    "Exit status: 0 done, 1 the file cannot be opened, 5 it is no capture, or damaged; what could\n"
    "be read was printed before.\n"
    "\n"
    "Examples:\n"
    "  timeout 10 tcpdump -i lo -w flight.pcap port 48000\n"
    "  orvane dump flight.pcap\n"
    "  orvane dump --absolute flight.pcap | grep -E '\\[(torn|unknown|odd|ends)'\n"
    "  tcpdump -i lo -U -w - port 48000 | orvane dump\n"
    "  orvane dump --json flight.pcap | jq 'select(.message == \"outputs\").values'";

struct DumpOptions {
    std::string file = "-";
    bool isAbsolute = false;
};

class Printer final {
public:
    Printer(bool isAbsolute, Format format)
        : style{isAbsolute, 0}, records(format, dump::messageColumns()) {}

    // Times count from the first frame of the capture.
    void SetOrigin(std::int64_t timeNs) { style.originNs = timeNs; }

    void Print(const Message& message) {
        if (records.IsWanted()) {
            records.Write(dump::messageAsRecord(message, style));
        } else {
            writeOut(dump::messageAsText(message, style));
        }
    }

private:
    TimeStyle style;
    RecordWriter records;
};

void readFrames(CaptureFile& capture, CaptureDecoder& decoder, Printer& printer) {
    bool isFirst = true;
    while (!isInterrupted()) {
        const std::optional<CaptureFile::Frame> frame = capture.Next();
        if (!frame) {
            return;
        }
        if (isFirst) {
            printer.SetOrigin(frame->timeNs);
            isFirst = false;
        }
        decoder.Add(frame->timeNs, capture.Link(), frame->bytes);
    }
}

ExitCode dumpCapture(const DumpOptions& options, const GlobalOptions& globals) {
    CaptureFile capture(options.file);
    Printer printer(options.isAbsolute, globals.OutputFormat());
    CaptureDecoder decoder(globals.port, [&](const Message& message) { printer.Print(message); });
    std::string damage;
    try {
        readFrames(capture, decoder, printer);
    } catch (const Failure& failure) {
        damage = failure.what();
    }
    decoder.Finish();
    // A read that was interrupted is no damage.
    if (!damage.empty() && !isInterrupted()) {
        throw Failure(ExitCode::UnexpectedAnswer, damage);
    }
    return ExitCode::Done;
}

} // namespace

void addDump(CLI::App& app, const GlobalOptions& globals, Work& work) {
    CLI::App* command = app.add_subcommand("dump", "Tells what a packet capture holds");
    const auto options = std::make_shared<DumpOptions>();
    command->add_option("FILE", options->file, "The capture; - for standard input")
        ->capture_default_str();
    command->add_flag("--absolute", options->isAbsolute,
                      "Times of day in UTC instead of seconds since the first packet");
    command->footer(kDumpFooter);
    command->callback([&globals, &work, options] {
        work = [&globals, options] { return dumpCapture(*options, globals); };
    });
}

} // namespace orvane::tool
