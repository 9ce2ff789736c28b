#include "board/process/Command.h"

#include "board/process/ChildProcess.h"
#include "board/process/waiting.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace process {

namespace {

constexpr std::size_t longestOutput = 64 * 1024;

/// 0, or why the file cannot be run.
int objectionTo(const std::string& file) {
    struct stat status{};
    if (::stat(file.c_str(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EACCES;
    }
    return ::access(file.c_str(), X_OK) == 0 ? 0 : errno;
}

int objectionInPath(const std::string& name) {
    const char* const path = std::getenv("PATH");
    std::istringstream directories(path == nullptr ? "" : path);
    int objection = ENOENT;
    for (std::string directory; std::getline(directories, directory, ':');) {
        const int error = objectionTo((directory.empty() ? "." : directory) + "/" + name);
        if (error == 0) {
            return 0;
        }
        if (error != ENOENT && error != ENOTDIR) {
            objection = error;
        }
    }
    return objection;
}

/// Waits until the descriptor is readable. Throws when the time is up.
void await(const support::Descriptor& descriptor, Clock::time_point deadline,
           const std::string& program) {
    std::vector<pollfd> one{{descriptor.get(), POLLIN, 0}};
    do {
        if (Clock::now() >= deadline) {
            throw std::runtime_error(fmt::format("{} does not end in time", program));
        }
    } while (!awaitReady(one, deadline));
}

std::string lastLine(std::string_view text) {
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return std::string(text.substr(text.rfind('\n') + 1));
}

}  // namespace

void checkProgram(const Command& command) {
    if (command.empty()) {
        throw std::runtime_error("there is no program to run");
    }
    const std::string& program = command.front();
    const bool isPath = program.find('/') != std::string::npos;
    const int error = isPath ? objectionTo(program) : objectionInPath(program);
    if (error != 0) {
        throw std::runtime_error(
            fmt::format("cannot run {}: {}", program, std::generic_category().message(error)));
    }
}

std::string outputOf(const Command& command, std::chrono::milliseconds limit) {
    ChildProcess process(command);
    const std::string& program = command.front();
    const auto deadline = Clock::now() + limit;
    std::string output;
    char buffer[4096];
    for (;;) {
        await(process.output(), deadline, program);
        const ssize_t size = ::read(process.output().get(), buffer, sizeof buffer);
        if (size == 0) {
            break;
        }
        if (size < 0) {
            continue;
        }
        output.append(buffer, static_cast<std::size_t>(size));
        if (output.size() > longestOutput) {
            throw std::runtime_error(fmt::format("{} writes too much", program));
        }
    }
    await(process.handle(), deadline, program);
    const std::string how = process.awaitEnd();
    if (how != "status 0") {
        const std::string last = lastLine(output);
        throw std::runtime_error(
            fmt::format("{} has ended with {}{}{}", program, how, last.empty() ? "" : ": ", last));
    }
    return output;
}

}  // namespace process
