#include "board/process/SessionProcess.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>

namespace process {

namespace {

std::string searchPath() {
    const char* const path = std::getenv("PATH");
    return fmt::format("PATH={}", path == nullptr ? "/usr/sbin:/usr/bin:/sbin:/bin" : path);
}

}  // namespace

SessionProcess::SessionProcess(const Command& command, const support::Descriptor& connection)
    : ChildProcess(command, {searchPath()},
                   {{connection.get(), STDIN_FILENO},
                    {connection.get(), STDOUT_FILENO},
                    {STDERR_FILENO, STDERR_FILENO}}) {}

}  // namespace process
