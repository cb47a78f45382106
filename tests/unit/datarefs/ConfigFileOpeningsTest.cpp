// When the configuration file is open, as another program sees it.

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"

namespace {

// Counts how often files of a folder were opened, and closed after writing, since construction.
class FolderWatch final {
public:
    explicit FolderWatch(const char* folder) : watch(::inotify_init1(IN_NONBLOCK)) {
        if (watch == -1 || ::inotify_add_watch(watch, folder, IN_OPEN | IN_CLOSE_WRITE) == -1) {
            throw std::system_error(errno, std::generic_category(), "inotify");
        }
    }
    ~FolderWatch() { ::close(watch); }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    void Count() {
        alignas(inotify_event) std::array<char, 65536> events;
        for (ssize_t size = 0; (size = ::read(watch, events.data(), events.size())) > 0;) {
            for (ssize_t at = 0; at < size;) {
                inotify_event event{};
                std::memcpy(&event, events.data() + at, sizeof(event));
                opened += (event.mask & IN_OPEN) != 0 ? 1 : 0;
                closed += (event.mask & IN_CLOSE_WRITE) != 0 ? 1 : 0;
                at += static_cast<ssize_t>(sizeof(event) + event.len);
            }
        }
    }

    int opened = 0;
    int closed = 0;

private:
    int watch;
};

class ConfigFileOpeningsTest : public DatarefProviderFixture {
protected:
    static std::string nameOf(int number) { return "kyr/output/" + std::to_string(number); }
};

// Someone who edits, replaces or reads the file while a client defines its outputs finds it
// complete and closed. A single opening for all outputs would stay open in between.
TEST_F(ConfigFileOpeningsTest, OpensAndClosesTheFileForEachNewDataref) {
    FolderWatch watch("Resources/plugins");
    for (int i = 0; i < 200; ++i) {
        provider->RegisterFloat(nameOf(i));
        watch.Count();
        ASSERT_EQ(watch.opened, i + 1);
        ASSERT_EQ(watch.closed, i + 1);
    }
}

TEST_F(ConfigFileOpeningsTest, OpensNoFileForDatarefsThatAreDeclaredAlready) {
    for (int i = 0; i < 200; ++i) {
        provider->RegisterFloat(nameOf(i));
    }
    restart();
    provider->ParseConfig();
    FolderWatch watch("Resources/plugins");
    for (int i = 0; i < 200; ++i) {
        provider->RegisterFloat(nameOf(i));
    }
    watch.Count();
    EXPECT_EQ(watch.opened, 0);
}

TEST_F(ConfigFileOpeningsTest, DeclaresInTheFileThatStandsThereAtEachRegistration) {
    provider->RegisterFloat("kyr/first");
    std::filesystem::rename(kConfigFile, "moved.cfg");
    provider->RegisterFloat("kyr/second");
    EXPECT_EQ(directory.Read("moved.cfg"), "\nkyr/first float");
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/second float");
}

} // namespace
