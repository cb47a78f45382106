#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "support/Text.h"

TemporaryDirectory::TemporaryDirectory() : former(std::filesystem::current_path()) {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvane-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    path = pattern;
    std::filesystem::current_path(path);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(former, ignored);
    std::filesystem::remove_all(path, ignored);
}

void TemporaryDirectory::MakePluginsFolder() const {
    std::filesystem::create_directories(path / "Resources" / "plugins");
}

std::string TemporaryDirectory::Path(const std::string& relativePath) const {
    return (path / relativePath).string();
}

std::string TemporaryDirectory::Write(const std::string& relativePath,
                                      const std::string& content) const {
    std::ofstream file(path / relativePath, std::ios::binary);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + relativePath);
    }
    return Path(relativePath);
}

std::string TemporaryDirectory::Read(const std::string& relativePath) const {
    return contentOf(path / relativePath);
}

bool TemporaryDirectory::Has(const std::string& relativePath) const {
    return std::filesystem::exists(path / relativePath);
}
