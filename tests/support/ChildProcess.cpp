#include "support/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "support/Deadline.h"

extern char** environ;

namespace {

void check(int error, const std::string& what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// What happens in the child before the program begins.
class SpawnPlan final {
public:
    explicit SpawnPlan(const ChildProcess::Setting& setting) {
        check(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
        check(posix_spawnattr_init(&attributes), "posix_spawnattr_init");
        connect(setting.input, STDIN_FILENO);
        connect(setting.output, STDOUT_FILENO);
        connect(setting.errors, STDERR_FILENO);
        sigset_t usual;
        sigemptyset(&usual);
        sigaddset(&usual, SIGPIPE);
        sigaddset(&usual, SIGHUP);
        check(posix_spawnattr_setsigdefault(&attributes, &usual), "signals");
        const int group = setting.hasOwnGroup ? POSIX_SPAWN_SETPGROUP : 0;
        check(posix_spawnattr_setflags(&attributes,
                                       static_cast<short>(POSIX_SPAWN_SETSIGDEF | group)),
              "flags");
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;

private:
    void connect(const std::optional<int>& ours, int theirs) {
        if (ours) {
            check(posix_spawn_file_actions_adddup2(&actions, *ours, theirs), "descriptors");
        }
    }
};

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe2");
    return ends;
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, const Setting& setting) {
    const SpawnPlan plan(setting);
    std::vector<std::string> environment = setting.environment.value_or(std::vector<std::string>());
    const std::vector<char*> environmentPointers = pointersTo(environment);
    check(posix_spawn(&pid, arguments.at(0).c_str(), &plan.actions, &plan.attributes,
                      pointersTo(arguments).data(),
                      setting.environment ? environmentPointers.data() : environ),
          arguments[0]);
}

ChildProcess::ChildProcess(const std::function<void()>& work) : pid(::fork()) {
    if (pid == 0) {
        work();
        ::_exit(0);
    }
    check(pid == -1 ? errno : 0, "fork");
}

ChildProcess::~ChildProcess() {
    if (!ended) {
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);
    }
}

void ChildProcess::Signal(int signal) const {
    if (ended) {
        throw std::runtime_error("the process has ended already");
    }
    ::kill(pid, signal);
}

bool ChildProcess::HasEnded() {
    ended = ended || ::waitpid(pid, &status, WNOHANG) == pid;
    return ended;
}

bool ChildProcess::HasStopped() {
    if (::waitpid(pid, &status, WNOHANG | WUNTRACED) != pid) {
        return false;
    }
    ended = !WIFSTOPPED(status);
    if (ended) {
        throw std::runtime_error("the process ended instead of stopping");
    }
    return true;
}

int ChildProcess::WaitForEnd() {
    if (!driveUntil([] { std::this_thread::yield(); }, [this] { return HasEnded(); })) {
        throw std::runtime_error("the process does not end");
    }
    return status;
}

int ChildProcess::ExitCode() const {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Channel pipeFromChild() {
    const auto [reads, writes] = makePipe();
    return {reads, writes};
}

Channel pipeToChild() {
    const auto [reads, writes] = makePipe();
    return {writes, reads};
}
