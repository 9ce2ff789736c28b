#pragma once

#include "support/setText.h"
#include "varo/records.h"

#include <string>

using Zone = varoLib_s_sntpTimeZone;

/// A zone with summer time as in Europe, if it has an offset for it. Offsets in minutes.
inline Zone zone(const std::string& name, int offset, int dstOffset = 0) {
    Zone result{};
    setText(result.name, name);
    result.offset = offset;
    result.dstOffset = dstOffset;
    result.dstSMonth = 3;
    result.dstSWeek = 5;
    result.dstSDayInWeek = 7;
    result.dstSTime = 200;
    result.dstEMonth = 10;
    result.dstEWeek = 5;
    result.dstEDayInWeek = 7;
    result.dstETime = 300;
    return result;
}
