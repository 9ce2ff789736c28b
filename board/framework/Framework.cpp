#include "board/framework/Framework.h"

#include "board/framework/stderrLog.h"

#include <syslog.h>

#include <chrono>

namespace framework {

namespace {

constexpr std::chrono::seconds lockWaitLimit{10};

}  // namespace

Framework::Framework()
    : log(writeToStandardError, LogImpl::levelInfo),
      entities([](const std::string& message) { logLine(LogImpl::levelError, message); }),
      configurationLock(lockWaitLimit) {}

Framework& framework() {
    static Framework& instance = *new Framework;
    return instance;
}

void logLine(LogImpl::logLevel_t level, const std::string& message) {
    Log::instance().setMsgLevel(level) << message + "\n";
}

void writeLog(int level, const std::string& message) {
    logLine(level <= LOG_ERR       ? LogImpl::levelError
            : level <= LOG_WARNING ? LogImpl::levelWarning
            : level <= LOG_INFO    ? LogImpl::levelInfo
                                   : LogImpl::levelDebug,
            message);
}

}  // namespace framework
