#pragma once

#include <ctime>

/// Stores the local time of a moment, by the time zone that the system is set to now. False when it
/// cannot be told. Unlike localtime(3) it may be called by several threads at a time.
inline bool toLocalTime(std::time_t moment, std::tm& local) {
    tzset();
    return localtime_r(&moment, &local) != nullptr;
}
