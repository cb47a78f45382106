#pragma once

#include <filesystem>
#include <string>

struct pcap;
struct pcap_dumper;
struct pcap_pkthdr;

// Records what goes over the loopback device from or to the plugin's port, from the construction
// until Finish, into a file. Throws when the system does not permit that, and when it lost packets.
class LoopbackCapture final {
public:
    explicit LoopbackCapture(std::filesystem::path file);
    ~LoopbackCapture();
    LoopbackCapture(const LoopbackCapture&) = delete;
    LoopbackCapture& operator=(const LoopbackCapture&) = delete;

    // Writes all that has arrived anywhere before the call, and returns the file.
    std::filesystem::path Finish();

private:
    static void take(unsigned char* self, const pcap_pkthdr* header, const unsigned char* bytes);
    void open();
    void limitToThePort();
    [[noreturn]] void fail(const std::string& what) const;

    std::filesystem::path file;
    pcap* handle = nullptr;
    pcap_dumper* dumper = nullptr;
    bool sawEndMark = false;
};
