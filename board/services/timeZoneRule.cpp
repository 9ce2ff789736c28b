#include "board/services/timeZoneRule.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace services {

namespace {

constexpr int minutesPerHour = 60;
constexpr int hourFactor = 100;
// POSIX: at least three; the C library keeps no more than six everywhere.
constexpr std::size_t shortestAbbreviation = 3;
constexpr std::size_t longestAbbreviation = 6;
/// What POSIX takes when the rule does not say.
constexpr int customaryDstOffset = 60;
constexpr int customaryTime = 200;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isAbbreviation(std::string_view name) {
    return name.size() >= shortestAbbreviation && name.size() <= longestAbbreviation &&
           std::ranges::all_of(name, isLetter) && name != "NONE";
}

/// "+01", "-0330": the offset east of UTC.
std::string numericName(int minutes) {
    const int amount = std::abs(minutes);
    const std::string hours =
        fmt::format("{}{:02}", minutes < 0 ? '-' : '+', amount / minutesPerHour);
    return amount % minutesPerHour == 0 ? hours
                                        : fmt::format("{}{:02}", hours, amount % minutesPerHour);
}

std::string inRule(const std::string& name) {
    return std::ranges::all_of(name, isLetter) ? name : "<" + name + ">";
}

/// POSIX counts the offset west of UTC.
std::string offsetText(int minutes) {
    const int amount = std::abs(minutes);
    const std::string hours = fmt::format("{}{}", minutes > 0 ? "-" : "", amount / minutesPerHour);
    return amount % minutesPerHour == 0 ? hours
                                        : fmt::format("{}:{:02}", hours, amount % minutesPerHour);
}

bool isSet(int month, int week, int day, int time) {
    return month != 0 || week != 0 || day != 0 || time != 0;
}

/// Sunday is 7 in the record and 0 in the rule.
std::string dateText(int month, int week, int day, int time) {
    constexpr int sunday = 7;
    std::string text = fmt::format(",M{}.{}.{}", month, week, day % sunday);
    const int minutes = time % hourFactor;
    if (minutes != 0) {
        text += fmt::format("/{}:{:02}", time / hourFactor, minutes);
    } else if (time != customaryTime) {
        text += fmt::format("/{}", time / hourFactor);
    }
    return text;
}

}  // namespace

TimeZoneRule timeZoneRule(const varoLib_s_sntpTimeZone& zone) {
    const std::string name = zone.name;
    const bool observesDst =
        zone.dstOffset != 0 &&
        isSet(zone.dstSMonth, zone.dstSWeek, zone.dstSDayInWeek, zone.dstSTime) &&
        isSet(zone.dstEMonth, zone.dstEWeek, zone.dstEDayInWeek, zone.dstETime);

    TimeZoneRule rule;
    rule.standardOffset = zone.offset * minutesPerHour;
    if (isAbbreviation(name)) {
        rule.standardName = name;
    } else {
        rule.standardName = zone.offset == 0 && !observesDst ? "UTC" : numericName(zone.offset);
    }
    rule.text = inRule(rule.standardName) + offsetText(zone.offset);
    if (!observesDst) {
        return rule;
    }
    const int dst = zone.offset + zone.dstOffset;
    rule.text += inRule(numericName(dst));
    if (zone.dstOffset != customaryDstOffset) {
        rule.text += offsetText(dst);
    }
    rule.text += dateText(zone.dstSMonth, zone.dstSWeek, zone.dstSDayInWeek, zone.dstSTime);
    rule.text += dateText(zone.dstEMonth, zone.dstEWeek, zone.dstEDayInWeek, zone.dstETime);
    return rule;
}

}  // namespace services
