#include "FailingListen.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool isFailing = false;

} // namespace

FailingListen::FailingListen() {
    isFailing = true;
}

FailingListen::~FailingListen() {
    isFailing = false;
}

int listen(int socket, int backlog) noexcept {
    if (isFailing) {
        errno = EADDRINUSE;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_listen, socket, backlog));
}
