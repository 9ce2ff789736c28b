#include "board/framework/stderrLog.h"

#include "board/framework/Framework.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace framework {

namespace {

std::string nameOf(LogImpl::logLevel_t level) {
    switch (level) {
        case LogImpl::levelError:
            return "error";
        case LogImpl::levelWarning:
            return "warning";
        case LogImpl::levelInfo:
            return "info";
        case LogImpl::levelDebug:
            return "debug";
    }
    return fmt::format("level {}", static_cast<int>(level));
}

}  // namespace

std::string formatLogLine(std::chrono::system_clock::time_point time, LogImpl::logLevel_t level,
                          const std::string& threadName, const std::string& message) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(milliseconds);
    return fmt::format("{:%FT%T}.{:03}Z {}{}: {}\n",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(seconds)),
                       (milliseconds - seconds).count(), nameOf(level),
                       threadName.empty() ? "" : " [" + threadName + "]", message);
}

void writeToStandardError(LogImpl::logLevel_t level, const std::string& message) {
    const std::string line = formatLogLine(std::chrono::system_clock::now(), level,
                                           framework().threads.nameOf(gettid()), message);
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t written = write(STDERR_FILENO, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd writable{STDERR_FILENO, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

}  // namespace framework
