#include "tools/orvane/dump/CaptureFile.h"

#include "tools/orvane/cli/Failure.h"

#include <fmt/format.h>
#include <pcap/pcap.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace orvane::tool::dump {

namespace {

std::FILE* openFile(const std::string& path) {
    if (path == "-") {
        return stdin;
    }
    std::error_code ignored;
    const bool isFolder = std::filesystem::is_directory(path, ignored);
    std::FILE* const file = isFolder ? nullptr : std::fopen(path.c_str(), "rbe");
    if (file == nullptr) {
        const int error = isFolder ? EISDIR : errno;
        throw Failure(ExitCode::WrongUsage, fmt::format("cannot read {}: {}", path,
                                                        std::generic_category().message(error)));
    }
    return file;
}

std::optional<LinkType> linkOf(int dataLink) {
    // The library's number for this one differs from system to system.
    const int number = dataLink == DLT_RAW ? static_cast<int>(LinkType::Raw) : dataLink;
    const auto link = static_cast<LinkType>(number);
    return isSupported(link) ? std::optional(link) : std::nullopt;
}

[[noreturn]] void complain(const std::string& path, const std::string& what) {
    throw Failure(ExitCode::UnexpectedAnswer, fmt::format("{}: {}", path, what));
}

} // namespace

void CaptureFile::Closer::operator()(pcap* handle) const {
    ::pcap_close(handle);
}

CaptureFile::CaptureFile(const std::string& pathOfFile) : path(pathOfFile) {
    std::FILE* const file = openFile(path);
    std::array<char, PCAP_ERRBUF_SIZE> error{};
    handle.reset(
        ::pcap_fopen_offline_with_tstamp_precision(file, PCAP_TSTAMP_PRECISION_NANO, error.data()));
    if (handle == nullptr) {
        if (file != stdin) {
            std::fclose(file);
        }
        complain(path, error.data());
    }
    const int dataLink = ::pcap_datalink(handle.get());
    const std::optional<LinkType> known = linkOf(dataLink);
    if (!known) {
        const char* const name = ::pcap_datalink_val_to_name(dataLink);
        complain(path, fmt::format("frames of type {} are not known here",
                                   name != nullptr ? name : std::to_string(dataLink)));
    }
    link = *known;
}

std::optional<CaptureFile::Frame> CaptureFile::Next() {
    constexpr int kRead = 1;
    constexpr std::int64_t kNsPerSecond = 1'000'000'000;
    pcap_pkthdr* header = nullptr;
    const unsigned char* bytes = nullptr;
    const int result = ::pcap_next_ex(handle.get(), &header, &bytes);
    if (result == PCAP_ERROR_BREAK) {
        return std::nullopt;
    }
    if (result != kRead) {
        complain(path, ::pcap_geterr(handle.get()));
    }
    // In a file of this precision the microseconds are nanoseconds.
    const auto timeNs =
        static_cast<std::int64_t>(header->ts.tv_sec) * kNsPerSecond + header->ts.tv_usec;
    return Frame{timeNs, ByteView(bytes, header->caplen)};
}

} // namespace orvane::tool::dump
