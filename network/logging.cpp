#include "network/Network.h"

#include <syslog.h>

#include <cstdarg>

namespace {

/// The system log's level of failures.
constexpr int failureLevel = LOG_ERR;

}  // namespace

// The system log is never opened here: facility and identity are those of the hosting process.

void Network::networkBleSyslog(int level, const char* format, ...) const {
    if (severity < level) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    vsyslog(level, format, arguments);
    va_end(arguments);
}

bool Network::reportIf(bool failure, const char* format, ...) const {
    if (failure && severity >= failureLevel) {
        std::va_list arguments;
        va_start(arguments, format);
        vsyslog(failureLevel, format, arguments);
        va_end(arguments);
    }
    return failure;
}
