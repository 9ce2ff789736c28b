#include "board/process/ChildProcess.h"

#include "board/process/waiting.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

extern char** environ;

namespace process {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// The texts as exec takes them, with a null behind the last; they stay the caller's.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

// The child, before it becomes another program. Other threads of the process may have held locks
// when it was forked: only calls that are safe in signal handlers are made.

template <class Given>
void place(std::span<Given> given) {
    // Standard descriptors may be closed in this process, so a descriptor can be on the number of
    // another one: first out of the way.
    for (Given& each : given) {
        each.descriptor = ::fcntl(each.descriptor, F_DUPFD, given.back().number + 1);
    }
    int next = 0;
    for (const Given& each : given) {
        if (each.number > next) {
            ::close_range(static_cast<unsigned>(next), static_cast<unsigned>(each.number - 1), 0);
        }
        ::dup2(each.descriptor, each.number);
        next = each.number + 1;
    }
    ::close_range(static_cast<unsigned>(next), ~0U, 0);
}

void say(const char* text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, ::strlen(text));
}

[[noreturn]] void become(char* const* arguments, char* const* environment, pid_t parent) {
    for (int number = 1; number < NSIG; ++number) {
        ::signal(number, SIG_DFL);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before that.
    if (::getppid() != parent) {
        ::_exit(EXIT_FAILURE);
    }
    ::execvpe(arguments[0], arguments, environment);
    const char* const reason = ::strerrordesc_np(errno);
    say("cannot run ");
    say(arguments[0]);
    say(": ");
    say(reason != nullptr ? reason : "unknown error");
    say("\n");
    ::_exit(127);
}

// The parent.

std::vector<std::string> environmentWith(const std::string& socketVariable) {
    std::vector<std::string> result;
    for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
        result.emplace_back(*each);
    }
    if (!socketVariable.empty()) {
        result.push_back(fmt::format("{}={}", socketVariable, ChildProcess::childSocket));
    }
    return result;
}

}  // namespace

ChildProcess::Ends ChildProcess::made(int result, const int (&numbers)[2], const char* failure) {
    if (result != 0) {
        fail(failure);
    }
    Ends ends{support::Descriptor(numbers[0]), support::Descriptor(numbers[1])};
    if (::fcntl(numbers[0], F_SETFL, O_NONBLOCK) != 0) {
        fail("cannot make a descriptor non-blocking");
    }
    return ends;
}

ChildProcess::Ends ChildProcess::makeSocket() {
    int ends[2];
    return made(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), ends,
                "cannot make a socket");
}

ChildProcess::Ends ChildProcess::makePipe() {
    int ends[2];
    return made(::pipe2(ends, O_CLOEXEC), ends, "cannot make a pipe");
}

ChildProcess::ChildProcess(const Command& command, const std::string& socketVariable)
    : ChildProcess(command, environmentWith(socketVariable),
                   socketVariable.empty() ? Ends{} : makeSocket(), makePipe()) {}

ChildProcess::ChildProcess(const Command& command, std::vector<std::string> environment,
                           Ends messages, Ends output)
    : ChildProcess(command, std::move(environment), [&] {
          std::vector<Given> given{{output.childs.get(), STDOUT_FILENO},
                                   {output.childs.get(), STDERR_FILENO}};
          if (messages.childs) {
              given.push_back({messages.childs.get(), childSocket});
          }
          return given;
      }()) {
    messageSocket = std::move(messages.own);
    outputPipe = std::move(output.own);
}

ChildProcess::ChildProcess(Command command, std::vector<std::string> environment,
                           std::vector<Given> given) {
    if (command.empty()) {
        throw std::invalid_argument("there is no program to run");
    }
    support::Descriptor empty;
    if (given.front().number != STDIN_FILENO) {
        empty = support::Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        given.insert(given.begin(), {empty.get(), STDIN_FILENO});
    }
    const std::vector<char*> arguments = pointersTo(command);
    const std::vector<char*> variables = pointersTo(environment);
    const pid_t parent = ::getpid();
    process = ::fork();
    if (process == 0) {
        place(std::span(given));
        become(arguments.data(), variables.data(), parent);
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

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : process(std::exchange(other.process, -1)),
      processHandle(std::move(other.processHandle)),
      messageSocket(std::move(other.messageSocket)),
      outputPipe(std::move(other.outputPipe)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(process, other.process);
    std::swap(processHandle, other.processHandle);
    std::swap(messageSocket, other.messageSocket);
    std::swap(outputPipe, other.outputPipe);
    return *this;
}

ChildProcess::~ChildProcess() {
    if (process > 0) {
        signal(SIGKILL);
        awaitEnd();
    }
}

bool ChildProcess::hasEnded() const { return isReadable(processHandle); }

void ChildProcess::signal(int number) const {
    // The number is the process's until its end was taken.
    if (process > 0) {
        ::kill(process, number);
    }
}

std::string ChildProcess::awaitEnd() {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                               : fmt::format("status {}", WEXITSTATUS(status));
}

}  // namespace process
