// The clock, replaced when a test is linked (ld --wrap). It is never set.

#include "fake/Platform.h"

#include <fmt/core.h>
#include <sys/time.h>

#include <cerrno>
#include <ctime>

using fake::Platform;

extern "C" {
std::time_t __real_time(std::time_t* moment);
int __real_gettimeofday(timeval* now, void* zone);
std::tm* __real_localtime_r(const std::time_t* moment, std::tm* local);

std::time_t __wrap_time(std::time_t* moment) {
    const auto& scripted = Platform::current().unixTime;
    if (!scripted) {
        return __real_time(moment);
    }
    if (moment != nullptr) {
        *moment = *scripted;
    }
    return *scripted;
}

int __wrap_gettimeofday(timeval* now, void* zone) {
    if (const auto& scripted = Platform::current().timeOfDay) {
        *now = *scripted;
        return 0;
    }
    return __real_gettimeofday(now, zone);
}

int __wrap_settimeofday(const timeval* now, const void* zone) {
    Platform& platform = Platform::current();
    const int error = platform.script.failureOf("settimeofday");
    platform.journal.write(fmt::format("settimeofday({}.{:06}, {}) -> {}", now->tv_sec,
                                       now->tv_usec, zone == nullptr ? "no zone" : "a zone",
                                       error != 0 ? fmt::format("errno {}", error) : "0"));
    if (error != 0) {
        errno = error;
        return -1;
    }
    return 0;
}

/// Only a failure is written down.
std::tm* __wrap_localtime_r(const std::time_t* moment, std::tm* local) {
    Platform& platform = Platform::current();
    if (const int error = platform.script.failureOf("localtime_r")) {
        platform.journal.write(fmt::format("localtime_r() -> errno {}", error));
        errno = error;
        return nullptr;
    }
    return __real_localtime_r(moment, local);
}
}
