#include "e2e/dissector/LoopbackCapture.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

#include <pcap/pcap.h>

#include "support/Deadline.h"

namespace {

constexpr std::uint16_t kPort = 48000;
// A segment of the loopback device with its headers.
constexpr int kLargestPacket = 70'000;
constexpr int kBufferSize = 32 << 20;
constexpr int kHandOverMs = 10;
// Ethernet without addresses, then IPv4, whose tenth byte is the protocol.
constexpr std::size_t kProtocolOffset = 14 + 9;

// A datagram to an unused port marks the end: all that was received before it was sent comes before
// it in the capture.
void sendEndMark() {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::sendto(socket, "", 0, 0, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    ::close(socket);
}

} // namespace

LoopbackCapture::LoopbackCapture(std::filesystem::path file) : file(std::move(file)) {
    char error[PCAP_ERRBUF_SIZE] = "";
    handle = ::pcap_create("lo", error);
    if (handle == nullptr) {
        throw std::runtime_error(std::string("capturing: ") + error);
    }
    open();
    limitToThePort();
    dumper = ::pcap_dump_open(handle, this->file.c_str());
    if (dumper == nullptr) {
        fail("pcap_dump_open");
    }
}

LoopbackCapture::~LoopbackCapture() {
    if (dumper != nullptr) {
        ::pcap_dump_close(dumper);
    }
    ::pcap_close(handle);
}

void LoopbackCapture::open() {
    ::pcap_set_snaplen(handle, kLargestPacket);
    ::pcap_set_buffer_size(handle, kBufferSize);
    ::pcap_set_timeout(handle, kHandOverMs);
    if (::pcap_activate(handle) < 0) {
        fail("pcap_activate");
    }
}

void LoopbackCapture::limitToThePort() {
    bpf_program filter{};
    if (::pcap_compile(handle, &filter, "ip and port 48000 and (tcp or udp)", 1,
                       PCAP_NETMASK_UNKNOWN) < 0 ||
        ::pcap_setfilter(handle, &filter) < 0) {
        fail("pcap_setfilter");
    }
    ::pcap_freecode(&filter);
}

std::filesystem::path LoopbackCapture::Finish() {
    sendEndMark();
    const auto takeMore = [this] {
        if (::pcap_dispatch(handle, -1, &LoopbackCapture::take,
                            reinterpret_cast<unsigned char*>(this)) < 0) {
            fail("pcap_dispatch");
        }
    };
    const bool isComplete = driveUntil(takeMore, [this] { return sawEndMark; });
    pcap_stat statistics{};
    if (!isComplete || ::pcap_stats(handle, &statistics) < 0 || statistics.ps_drop > 0) {
        fail("packets were lost");
    }
    ::pcap_dump_close(std::exchange(dumper, nullptr));
    return file;
}

void LoopbackCapture::take(unsigned char* self, const pcap_pkthdr* header,
                           const unsigned char* bytes) {
    auto& capture = *reinterpret_cast<LoopbackCapture*>(self);
    if (bytes[kProtocolOffset] == IPPROTO_UDP) {
        capture.sawEndMark = true;
    } else if (!capture.sawEndMark) {
        ::pcap_dump(reinterpret_cast<unsigned char*>(capture.dumper), header, bytes);
    }
}

void LoopbackCapture::fail(const std::string& what) const {
    throw std::runtime_error("capturing: " + what + ": " + ::pcap_geterr(handle));
}
