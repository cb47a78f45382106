#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct pcap;

namespace orvane::tool::dump {

// A recording in one of the formats that libpcap reads, from a file or standard input.
class CaptureFile final {
public:
    struct Frame {
        std::int64_t timeNs = 0; // since 1970
        ByteView bytes;          // valid until the next call
    };

    // "-" is standard input. Failure with WrongUsage when the file cannot be opened, with
    // UnexpectedAnswer when it is no recording, or one of frames that are not known here.
    explicit CaptureFile(const std::string& pathOfFile);

    LinkType Link() const { return link; }
    // Nothing at the end. Failure with UnexpectedAnswer when the recording is cut or damaged.
    std::optional<Frame> Next();

private:
    struct Closer {
        void operator()(pcap* handle) const;
    };

    std::string path;
    std::unique_ptr<pcap, Closer> handle;
    LinkType link = LinkType::Ethernet;
};

} // namespace orvane::tool::dump
