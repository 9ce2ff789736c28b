#pragma once

#include "varo/records.h"

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

}  // namespace services
