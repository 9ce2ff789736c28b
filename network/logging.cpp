#include "network/Network.h"

#include <syslog.h>

// The system log is never opened here: facility and identity are those of the hosting process.

void Network::networkBleSyslog(int level, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    writeSyslog(level, format, arguments);
    va_end(arguments);
}

void Network::trace(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    writeSyslog(LOG_DEBUG, format, arguments);
    va_end(arguments);
}

bool Network::reportIf(bool failure, const char* format, ...) {
    if (failure) {
        std::va_list arguments;
        va_start(arguments, format);
        writeSyslog(LOG_ERR, format, arguments);
        va_end(arguments);
    }
    return failure;
}

int Network::resultOf(int status, const char* format, ...) {
    if (status != 0) {
        std::va_list arguments;
        va_start(arguments, format);
        writeSyslog(LOG_ERR, format, arguments);
        va_end(arguments);
    }
    return resultOf(status);
}

void Network::writeSyslog(int level, const char* format, std::va_list arguments) {
    if (severity >= level) {
        vsyslog(level, format, arguments);
    }
}
