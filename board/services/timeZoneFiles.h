#pragma once

#include "varo/records.h"

#include <filesystem>

namespace services {

/// Files that tell a machine's programs the local time. Each may be empty: it is not written.
struct TimeZoneFiles {
    /// In the time zone information format; glibc reads /etc/localtime.
    std::filesystem::path localtime;
    /// The rule of the TZ variable as a line; uClibc reads /etc/TZ.
    std::filesystem::path rule;
};

/// Puts the time zone into force. Throws std::system_error or std::runtime_error; a symbolic link
/// is refused, for it may lead into the zone database.
void writeTimeZone(const TimeZoneFiles& files, const varoLib_s_sntpTimeZone& zone);

}  // namespace services
