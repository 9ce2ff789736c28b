#include "board/services/program.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace services {

namespace {

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

}  // namespace services
