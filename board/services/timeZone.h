#pragma once

#include "varo/records.h"

#include <filesystem>
#include <string>

namespace services {

/// A time zone as the TZ variable states it (POSIX.1, tzset(3)).
struct TimeZoneRule {
    std::string text;          ///< such as "<+01>-1<+02>,M3.5.0,M10.5.0/3"
    std::string standardName;  ///< abbreviation of standard time, without the angle brackets
    int standardOffset;        ///< of standard time, seconds east of UTC
};

/// The numbers of the record make the rule. Its name is the abbreviation of standard time when it
/// can be one: 3 to 6 letters, and not "NONE". Any other name leads to numeric abbreviations, as
/// the zone database has them for zones without customary ones; UTC is called so. Daylight-saving
/// time is observed when its offset is not 0 and both dates are set. The values are in range.
TimeZoneRule timeZoneRule(const varoLib_s_sntpTimeZone& zone);

/// A file in the time zone information format (RFC 8536, tzfile(5)), version 2, by which the rule
/// holds at all times: what the C library reads as /etc/localtime.
std::string zoneFile(const TimeZoneRule& rule);

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
