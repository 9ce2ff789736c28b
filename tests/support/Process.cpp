#include "support/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace {

constexpr int patienceMilliseconds = 60'000;

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

[[noreturn]] void become(const std::vector<char*>& arguments,
                         const Process::Environment& environment, int output) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

}  // namespace

Process::Process(std::vector<std::string> commandLine, const Environment& environment) {
    std::vector<char*> arguments;
    for (std::string& argument : commandLine) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);

    std::array<int, 2> ends{};
    check(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe2");
    pipe = ends[0];
    fcntl(pipe, F_SETFL, O_NONBLOCK);
    process = fork();
    if (process == 0) {
        become(arguments, environment, ends[1]);
    }
    close(ends[1]);
    check(process != -1, "fork");
    handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    check(handle != -1, "pidfd_open");
}

Process::~Process() {
    if (!isReaped) {
        signal(SIGKILL);
        waitpid(process, nullptr, 0);
    }
    close(handle);
    close(pipe);
}

void Process::signal(int number) const { kill(process, number); }

bool Process::hasEnded() const {
    pollfd ended{handle, POLLIN, 0};
    return poll(&ended, 1, 0) == 1;
}

bool Process::readMore() {
    std::array<pollfd, 2> events{pollfd{pipe, POLLIN, 0}, pollfd{handle, POLLIN, 0}};
    if (poll(events.data(), events.size(), patienceMilliseconds) <= 0) {
        return false;
    }
    std::array<char, 4096> buffer{};
    ssize_t size = 0;
    while ((size = read(pipe, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return true;
}

bool Process::awaitOutput(const std::string& expected) {
    while (text.find(expected) == text.npos) {
        const bool ended = hasEnded();
        if (!readMore()) {
            return false;
        }
        if (ended) {
            return text.find(expected) != text.npos;
        }
    }
    return true;
}

int Process::awaitEnd() {
    while (!hasEnded()) {
        if (!readMore()) {
            throw std::runtime_error("the program does not end; it printed: " + text);
        }
    }
    readMore();
    int status = 0;
    check(waitpid(process, &status, 0) == process, "waitpid");
    isReaped = true;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}
