#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

// A folder of a test's own, removed with all its files when the test ends.
class TemporaryFolder final {
public:
    TemporaryFolder()
        : path((std::filesystem::temp_directory_path() / "headless-XXXXXX").string()) {
        if (::mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path(const std::string& file) const { return path + "/" + file; }

    std::string Write(const std::string& file, const std::string& text) const {
        std::ofstream(Path(file), std::ios::binary) << text;
        return Path(file);
    }

    std::string Read(const std::string& file) const {
        std::ostringstream text;
        text << std::ifstream(Path(file), std::ios::binary).rdbuf();
        return text.str();
    }

private:
    std::string path;
};
