#pragma once

#include "mngctl/commandTree.h"
#include "mngctl/zone/zoneSettings.h"

namespace mngctl {

/// Adds the commands of the time zone below `time`.
void addTimeZone(Command& parent);

/// The board's local time. Throws Refused when it cannot tell.
LocalTime readTime(Session& session);

/// The board's time zone; of its name the first 99 characters.
ZoneSettings readZone(Session& session);

/// The zone's rule; what the board says can be out of range, then there is none.
std::string ruleOrNone(const ZoneSettings& zone);
Json ruleOrNull(const ZoneSettings& zone);

}  // namespace mngctl
