#pragma once

#include "mngctl/zone/zoneSettings.h"

#include <optional>
#include <string>
#include <string_view>

namespace mngctl {

/// A date, 31/12/2024 or 2024-12-31, and a time, 23:59 or 23:59:30. Throws UsageError, also for a
/// day that the calendar does not have.
LocalTime parseCivilTime(std::string_view date, std::string_view time);

/// The time as the board tells it, "23:59:30 31/12/2024"; empty if it is another text.
std::optional<LocalTime> readBoardTime(std::string_view text);

/// "31/12/2024 23:59:30", as the board takes it.
std::string boardTime(LocalTime time);

/// "2024-12-31 23:59:30"
std::string formatCivilTime(LocalTime time);

}  // namespace mngctl
