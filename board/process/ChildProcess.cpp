#include "board/process/ChildProcess.h"

#include "board/process/becomeProgram.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

extern char** environ;

namespace process {

namespace {

constexpr int childSocket = ChildProcess::childSocket;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Everything the child does before it becomes another program. Other threads of the process may
/// have held locks when it was forked: only calls that are safe in signal handlers are made.
[[noreturn]] void become(char* const* arguments, char* const* environment, int socket, int output,
                         pid_t parent) {
    // Standard descriptors may be closed in this process, so these can be among 0 to 2 or on the
    // socket's new number: first out of the way.
    socket = ::fcntl(socket, F_DUPFD, childSocket + 1);
    output = ::fcntl(output, F_DUPFD, childSocket + 1);
    const int empty = ::open("/dev/null", O_RDONLY);
    ::dup2(empty, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::dup2(socket, childSocket);
    ::close_range(STDERR_FILENO + 1, childSocket - 1, 0);
    ::close_range(childSocket + 1, ~0U, 0);

    process::becomeProgram(arguments, environment, parent);
}

std::vector<std::string> environmentWith(const std::string& variable) {
    std::vector<std::string> result;
    for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
        result.emplace_back(*each);
    }
    result.push_back(fmt::format("{}={}", variable, childSocket));
    return result;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& variable) {
    if (command.empty()) {
        throw std::invalid_argument("there is no program to run");
    }
    std::vector<std::string> argumentTexts = command;
    std::vector<std::string> environmentTexts = environmentWith(variable);
    const std::vector<char*> arguments = process::pointersTo(argumentTexts);
    const std::vector<char*> environment = process::pointersTo(environmentTexts);

    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        fail("cannot make a socket");
    }
    messageSocket = support::Descriptor(ends[0]);
    const support::Descriptor theirSocket(ends[1]);
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        fail("cannot make a pipe");
    }
    outputPipe = support::Descriptor(ends[0]);
    const support::Descriptor theirOutput(ends[1]);
    for (const support::Descriptor* own : {&messageSocket, &outputPipe}) {
        if (::fcntl(own->get(), F_SETFL, O_NONBLOCK) != 0) {
            fail("cannot make a descriptor non-blocking");
        }
    }

    const pid_t parent = ::getpid();
    process = ::fork();
    if (process == 0) {
        become(arguments.data(), environment.data(), theirSocket.get(), theirOutput.get(), parent);
    }
    if (process < 0) {
        fail("cannot make a process");
    }
    processHandle = support::Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    if (!processHandle) {
        const int error = errno;
        signal(SIGKILL);
        awaitEnd();
        errno = error;
        fail("cannot watch a process");
    }
}

ChildProcess::~ChildProcess() {
    if (process > 0) {
        signal(SIGKILL);
        awaitEnd();
    }
}

void ChildProcess::signal(int number) const {
    // The number is the process's until its end was taken.
    if (process > 0) {
        ::kill(process, number);
    }
}

std::string ChildProcess::awaitEnd() {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            break;
        }
    }
    process = -1;
    return WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                               : fmt::format("status {}", WEXITSTATUS(status));
}

}  // namespace process
