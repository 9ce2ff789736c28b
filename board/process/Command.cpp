#include "board/process/Command.h"

#include "board/process/ChildProcess.h"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <stdexcept>

namespace process {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t longestOutput = 64 * 1024;
constexpr const char* socketVariable = "NETWORKBLE_SOCKET";

/// Waits until the descriptor is readable. Throws when the time is up.
void await(const support::Descriptor& descriptor, Clock::time_point deadline,
           const std::string& program) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            throw std::runtime_error(fmt::format("{} does not end in time", program));
        }
        pollfd one{descriptor.get(), POLLIN, 0};
        if (::poll(&one, 1, static_cast<int>(left)) == 1) {
            return;
        }
    }
}

std::string lastLine(std::string_view text) {
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return std::string(text.substr(text.rfind('\n') + 1));
}

}  // namespace

std::string outputOf(const std::vector<std::string>& command, std::chrono::milliseconds limit) {
    ChildProcess process(command, socketVariable);
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
