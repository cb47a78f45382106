// A capture file: whatever is in it, it is read to its end or to where it is damaged.

#include <string>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/dump/CaptureDecoder.h"
#include "tools/orvane/dump/CaptureFile.h"
#include "tools/orvane/dump/MessageText.h"

namespace {

namespace dump = orvane::tool::dump;

constexpr const char* kFile = "capture";

void examine(const dump::Message& message) {
    dump::messageAsText(message, {true, 0});
}

void readFrames(dump::CaptureDecoder& decoder) {
    try {
        dump::CaptureFile capture(kFile);
        while (const auto frame = capture.Next()) {
            decoder.Add(frame->timeNs, capture.Link(), frame->bytes);
        }
    } catch (const orvane::tool::Failure&) {
        // Told by the tool behind what could be read.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TemporaryDirectory folder;
    folder.Write(kFile, std::string(data, data + size));
    dump::CaptureDecoder decoder(48000, examine);
    readFrames(decoder);
    decoder.Finish();
    return 0;
}
