#include "support/PrivateNetwork.h"

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

bool bringLoopbackUp() {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket == -1) {
        return false;
    }
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool up = ::ioctl(socket, SIOCSIFFLAGS, &request) == 0;
    ::close(socket);
    return up;
}

// The lock is held until the process ends.
void waitForThePort() {
    const auto path = std::filesystem::temp_directory_path() / "orvane-tests.lock";
    const int file = ::open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0666);
    if (file == -1 || ::flock(file, LOCK_EX) == -1) {
        throw std::system_error(errno, std::generic_category(), path.string());
    }
}

} // namespace

bool isNetworkPrivate() {
    char name[IF_NAMESIZE];
    // The loopback device is always the first.
    return ::if_indextoname(1, name) != nullptr && ::if_indextoname(2, name) == nullptr;
}

void enterPrivateNetwork() {
    const bool isPrivate =
        ::unshare(CLONE_NEWNET) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0;
    if (!isPrivate) {
        waitForThePort();
    } else if (!bringLoopbackUp()) {
        throw std::system_error(errno, std::generic_category(), "the loopback device");
    }
}
