#include "board/framework/stderrLog.h"

#include "board/framework/Framework.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <unistd.h>

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

void writeToStandardError(int level, const std::string& message) {
    support::writeToStandardError(formatLogLine(std::chrono::system_clock::now(),
                                                static_cast<LogImpl::logLevel_t>(level),
                                                framework().threads.nameOf(gettid()), message));
}

}  // namespace framework
