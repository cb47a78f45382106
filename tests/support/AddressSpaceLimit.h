#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <fstream>
#include <system_error>

// Like `ulimit -v`: while an object lives, this process and its children may map only this much
// more than it has mapped already. Not under a sanitizer, which maps terabytes.
class AddressSpaceLimit final {
public:
    explicit AddressSpaceLimit(std::size_t moreBytes) {
        ::getrlimit(RLIMIT_AS, &former);
        set(mappedBytes() + moreBytes);
    }
    ~AddressSpaceLimit() { ::setrlimit(RLIMIT_AS, &former); }
    AddressSpaceLimit(const AddressSpaceLimit&) = delete;
    AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;

private:
    static std::size_t mappedBytes() {
        std::ifstream file("/proc/self/statm");
        std::size_t pages = 0;
        file >> pages;
        return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    }

    void set(std::size_t bytes) const {
        const rlimit limit{bytes, former.rlim_max};
        if (::setrlimit(RLIMIT_AS, &limit) == -1) {
            throw std::system_error(errno, std::generic_category(), "RLIMIT_AS");
        }
    }

    rlimit former{};
};
