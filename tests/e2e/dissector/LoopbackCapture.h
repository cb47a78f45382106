#pragma once

#include <filesystem>
#include <string>

struct pcap;
struct pcap_dumper;
struct pcap_pkthdr;

// Captures the loopback device's packets from and to the plugin's port in a file, from construction
// to Finish. Throws if the system does not permit that or packets were lost.
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
