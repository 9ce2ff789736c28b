#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace mngctl {

/// When daylight-saving time starts or ends, as the board keeps it.
struct SwitchDate {
    int month = 0;  ///< 1 to 12
    int week = 0;   ///< 1 to 5; 5 is the last
    int day = 0;    ///< 1 (Monday) to 7 (Sunday)
    int time = 0;   ///< local time until then: hours times 100 plus minutes

    /// Nothing but zeros is a date that is not set.
    bool isSet() const { return month != 0 || week != 0 || day != 0 || time != 0; }
    /// False where the numbers name no date.
    bool isValid() const;
    bool operator==(const SwitchDate&) const = default;
};

/// A time zone as the board keeps it.
struct ZoneSettings {
    std::string name;
    int offset = 0;     ///< minutes east of UTC
    int dstOffset = 0;  ///< minutes added while daylight-saving time is in force
    SwitchDate start{};
    SwitchDate end{};

    bool observesDst() const { return dstOffset != 0 && start.isSet() && end.isSet(); }
};

/// "+01:00", "-03:30".
std::string formatOffset(int minutes);

/// A date in a rule of the TZ variable: "M3.5.0/3".
std::string formatDate(const SwitchDate& date);

/// The zone as a rule of the TZ variable (POSIX.1, tzset(3)).
std::string formatRule(const ZoneSettings& zone);

/// The reverse; the name is that of standard time. Throws UsageError that says what in the rule is
/// wrong, or what the board cannot keep.
ZoneSettings parseRule(std::string_view rule);

using LocalTime = std::chrono::local_seconds;

/// A change of the local time.
struct ZoneChange {
    LocalTime before;  ///< what clocks would show
    LocalTime after;   ///< what they show instead
    bool toDst;
};

/// Whether daylight-saving time is in force at a local time, and the changes that come after it, as
/// many as are asked for; none where daylight-saving time is not observed. Dates are valid.
struct Outlook {
    bool isDst = false;
    std::vector<ZoneChange> changes;
};
Outlook outlook(const ZoneSettings& zone, LocalTime now, std::size_t count);

/// The rule that holds from now on in a zone of this machine's zone database (tzfile(5)), in
/// /usr/share/zoneinfo or the directory that TZDIR names. Throws UsageError when there is none.
std::string ruleOfZone(const std::string& name);

}  // namespace mngctl
