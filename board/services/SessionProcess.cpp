#include "board/services/SessionProcess.h"

#include "board/process/becomeProgram.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace services {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Everything the child does before it becomes the server. Other threads of the process may have
/// held locks when it was forked: only calls that are safe in signal handlers are made.
[[noreturn]] void become(char* const* arguments, char* const* environment, int connection,
                         pid_t parent) {
    // The connection may have got the number of a standard descriptor that was closed: first out of
    // the way.
    connection = ::fcntl(connection, F_DUPFD, STDERR_FILENO + 1);
    ::dup2(connection, STDIN_FILENO);
    ::dup2(connection, STDOUT_FILENO);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);

    process::becomeProgram(arguments, environment, parent);
}

std::string searchPath() {
    const char* const path = std::getenv("PATH");
    return fmt::format("PATH={}", path == nullptr ? "/usr/sbin:/usr/bin:/sbin:/bin" : path);
}

}  // namespace

SessionProcess::SessionProcess(const Command& command, const support::Descriptor& connection) {
    std::vector<std::string> argumentTexts = command;
    std::vector<std::string> environmentTexts{searchPath()};
    const std::vector<char*> arguments = process::pointersTo(argumentTexts);
    const std::vector<char*> environment = process::pointersTo(environmentTexts);
    const pid_t parent = ::getpid();
    process = ::fork();
    if (process == 0) {
        become(arguments.data(), environment.data(), connection.get(), parent);
    }
    if (process < 0) {
        fail("cannot make a process");
    }
    processHandle = support::Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    if (!processHandle) {
        const int error = errno;
        kill();
        awaitEnd();
        errno = error;
        fail("cannot watch a process");
    }
}

SessionProcess::SessionProcess(SessionProcess&& other) noexcept
    : process(std::exchange(other.process, -1)), processHandle(std::move(other.processHandle)) {}

SessionProcess& SessionProcess::operator=(SessionProcess&& other) noexcept {
    std::swap(process, other.process);
    std::swap(processHandle, other.processHandle);
    return *this;
}

SessionProcess::~SessionProcess() {
    if (process > 0) {
        kill();
        awaitEnd();
    }
}

bool SessionProcess::hasEnded() const {
    pollfd one{processHandle.get(), POLLIN, 0};
    return ::poll(&one, 1, 0) == 1;
}

void SessionProcess::kill() const {
    // The number is the process's until its end was taken.
    if (process > 0) {
        ::kill(process, SIGKILL);
    }
}

std::string SessionProcess::awaitEnd() {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                               : fmt::format("status {}", WEXITSTATUS(status));
}

}  // namespace services
