#include "wire/Server.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ranges>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

constexpr int patienceMilliseconds = 60'000;

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

void awaitReadable(int descriptor, const char* what) {
    pollfd event{descriptor, POLLIN, 0};
    if (poll(&event, 1, patienceMilliseconds) != 1) {
        throw std::runtime_error(std::string("the server does not ") + what);
    }
}

[[noreturn]] void becomeServer(int standardInput, int standardOutput, int standardError) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(standardInput, STDIN_FILENO);
    dup2(standardOutput, STDOUT_FILENO);
    dup2(standardError, STDERR_FILENO);
    // The heap's figures count what a thread keeps for itself as in use; it is to keep nothing.
    setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
    execl(SERVER_PROGRAM, SERVER_PROGRAM, nullptr);
    _exit(127);
}

}  // namespace

Server::Server() : errors(std::tmpfile()) {
    check(errors != nullptr, "tmpfile");
    int inputEnds[2];
    int outputEnds[2];
    check(pipe2(inputEnds, O_CLOEXEC) == 0 && pipe2(outputEnds, O_CLOEXEC) == 0, "pipe2");
    process = fork();
    if (process == 0) {
        becomeServer(inputEnds[0], outputEnds[1], fileno(errors));
    }
    close(inputEnds[0]);
    close(outputEnds[1]);
    input = inputEnds[1];
    output = outputEnds[0];
    check(process != -1, "fork");
    handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    check(handle != -1, "pidfd_open");
    std::istringstream(readLine()) >> ports[0] >> ports[1];
    journal();  // of its start
}

Server::~Server() {
    if (!endStatus) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    if (input != -1) {
        close(input);
    }
    close(output);
    close(handle);
    std::fclose(errors);
}

std::string Server::readLine() {
    std::size_t searched = 0;
    std::size_t end = 0;
    while ((end = unread.find('\n', searched)) == unread.npos) {
        searched = unread.size();
        awaitReadable(output, "answer");
        char buffer[65536];
        const ssize_t size = read(output, buffer, sizeof buffer);
        if (size <= 0) {
            throw std::runtime_error("the server is gone; it printed: " + errorOutput());
        }
        unread.append(buffer, static_cast<std::size_t>(size));
    }
    std::string line = unread.substr(0, end);
    unread.erase(0, end + 1);
    return line;
}

void Server::command(const std::string& line) const {
    const std::string whole = line + "\n";
    check(write(input, whole.data(), whole.size()) == static_cast<ssize_t>(whole.size()), "write");
}

std::vector<std::string> Server::journal() {
    command("journal");
    std::vector<std::string> entries(std::stoul(readLine()));
    for (std::string& entry : entries) {
        entry = readLine();
    }
    return entries;
}

void Server::setStatus(const std::string& function, int status) {
    command("status " + function + " " + std::to_string(status));
    readLine();
}

std::size_t Server::memoryInUse() {
    command("memory");
    return std::stoul(readLine());
}

std::size_t Server::residentMemory() const {
    std::ifstream statistics("/proc/" + std::to_string(process) + "/statm");
    std::size_t whole = 0;
    std::size_t resident = 0;
    statistics >> whole >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t Server::openDescriptors() const {
    const std::filesystem::directory_iterator descriptors("/proc/" + std::to_string(process) +
                                                          "/fd");
    return static_cast<std::size_t>(std::ranges::distance(descriptors));
}

int Server::end() {
    if (!endStatus) {
        close(std::exchange(input, -1));
        awaitReadable(handle, "end");
        int status = 0;
        check(waitpid(process, &status, 0) == process, "waitpid");
        endStatus = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }
    return *endStatus;
}

std::string Server::errorOutput() const {
    std::string text;
    char buffer[4096];
    ssize_t size = 0;
    while ((size = pread(fileno(errors), buffer, sizeof buffer, static_cast<off_t>(text.size()))) >
           0) {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
}
