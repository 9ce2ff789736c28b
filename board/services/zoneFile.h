#pragma once

#include "board/services/timeZoneRule.h"

#include <string>

namespace services {

/// A file in the time zone information format (RFC 8536, tzfile(5)), version 2, by which the rule
/// holds at all times: what the C library reads as /etc/localtime.
std::string zoneFile(const TimeZoneRule& rule);

}  // namespace services
