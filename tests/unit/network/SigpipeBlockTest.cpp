#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "network/SigpipeBlock.h"

namespace {

sigset_t sigpipeAlone() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
}

bool isBlocked() {
    sigset_t mask;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    return sigismember(&mask, SIGPIPE) == 1;
}

bool isPending() {
    sigset_t pending;
    ::sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

bool takePending() {
    const sigset_t signals = sigpipeAlone();
    const timespec noWait{0, 0};
    return ::sigtimedwait(&signals, nullptr, &noWait) == SIGPIPE;
}

int handled = 0;

void countSignal(int /*signal*/) {
    ++handled;
}

// A thread's own mask and the process's handler, as a simulator may have set them, and a socket
// whose other end is closed.
class SigpipeBlockTest : public testing::Test {
protected:
    SigpipeBlockTest() {
        handled = 0;
        struct sigaction action {};
        action.sa_handler = countSignal;
        ::sigaction(SIGPIPE, &action, &formerAction);
        int ends[2];
        ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
        ::close(ends[1]);
        broken = ends[0];
    }
    ~SigpipeBlockTest() override {
        takePending();
        const sigset_t signals = sigpipeAlone();
        ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        ::sigaction(SIGPIPE, &formerAction, nullptr);
        ::close(broken);
    }

    static void blockSigpipe() {
        const sigset_t signals = sigpipeAlone();
        ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    }

    // Sends as the connection does. Returns the error of the send.
    int sendToClosedPeer() const {
        const SigpipeBlock block;
        EXPECT_EQ(::send(broken, "x", 1, 0), -1);
        EXPECT_TRUE(isPending());
        block.TakeSignal();
        return errno;
    }

    int broken = -1;
    struct sigaction formerAction {};
};

TEST_F(SigpipeBlockTest, LeavesOnlyTheErrorOfASendToAClosedPeer) {
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    EXPECT_FALSE(isPending());
    EXPECT_FALSE(isBlocked());
    EXPECT_EQ(handled, 0);
}

TEST_F(SigpipeBlockTest, LeavesTheSignalBlockedWhereItWas) {
    blockSigpipe();
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    EXPECT_FALSE(isPending());
    EXPECT_TRUE(isBlocked());
}

TEST_F(SigpipeBlockTest, TakesTheSignalOfAProcessThatIgnoresIt) {
    ::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    EXPECT_FALSE(isPending());
}

TEST_F(SigpipeBlockTest, LeavesASignalThatWasPendingBefore) {
    blockSigpipe();
    ::raise(SIGPIPE);
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    EXPECT_TRUE(isPending());
    EXPECT_EQ(handled, 0);
}

TEST_F(SigpipeBlockTest, LeavesASignalThatWaitsForTheWholeProcess) {
    blockSigpipe();
    ::kill(::getpid(), SIGPIPE);
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    EXPECT_TRUE(isPending());
}

TEST_F(SigpipeBlockTest, LeavesTheSignalOfAnotherThread) {
    std::promise<void> isPendingThere;
    std::promise<void> hasSent;
    bool survived = false;
    std::thread other([&] {
        blockSigpipe();
        ::raise(SIGPIPE);
        isPendingThere.set_value();
        hasSent.get_future().wait();
        survived = takePending();
    });
    isPendingThere.get_future().wait();
    EXPECT_EQ(sendToClosedPeer(), EPIPE);
    hasSent.set_value();
    other.join();
    EXPECT_TRUE(survived);
    EXPECT_EQ(handled, 0);
}

TEST_F(SigpipeBlockTest, DeliversASignalThatIsSentMeanwhile) {
    {
        const SigpipeBlock block;
        ::kill(::getpid(), SIGPIPE);
        EXPECT_EQ(handled, 0);
    }
    EXPECT_EQ(handled, 1);
}

TEST_F(SigpipeBlockTest, DoesNotWaitForASignalThatIsNotThere) {
    const SigpipeBlock block;
    errno = ENOTSOCK;
    block.TakeSignal();
    EXPECT_EQ(errno, ENOTSOCK);
}

} // namespace
