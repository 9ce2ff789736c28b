#include "board/framework/Framework.h"

#include "board/framework/stderrLog.h"
#include "framework/Log.h"

#include <chrono>

namespace framework {

namespace {

constexpr std::chrono::seconds lockWaitLimit{10};

}  // namespace

Framework::Framework()
    : entities([](const std::string& message) { logLine(LogImpl::levelError, message); }),
      configurationLock(lockWaitLimit) {
    log.setSink(writeToStandardError, LogImpl::levelInfo);
}

Framework& framework() {
    static Framework& instance = *new Framework;
    return instance;
}

void logLine(LogImpl::logLevel_t level, const std::string& message) {
    Log::instance().setMsgLevel(level) << message + "\n";
}

}  // namespace framework
