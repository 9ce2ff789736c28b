#include "network/Network.h"

#include <syslog.h>

#include <cstdarg>

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
