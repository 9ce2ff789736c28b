#include "board/services/timeZone.h"

#include "board/support/wholeFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
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

namespace {

/// Of 1901: glibc asks the rule at the end of the file only from the last transition on, so there
/// has to be one.
constexpr std::int64_t beginning = std::numeric_limits<std::int32_t>::min();

/// In network byte order.
template <class Number>
void append(std::string& bytes, Number number) {
    constexpr unsigned int octetBits = 8;
    for (std::size_t left = sizeof number; left > 0; --left) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> (octetBits * (left - 1)));
    }
}

/// One local time type, called `name`, and the transitions into it.
void appendBlock(std::string& bytes, std::uint32_t transitions, std::int32_t offset,
                 const std::string& name) {
    bytes += "TZif2";
    bytes.append(15, '\0');
    // Indicators of UT and of standard time, leap seconds, transitions, types, characters.
    const auto characters = static_cast<std::uint32_t>(name.size() + 1);
    for (const std::uint32_t count : {0U, 0U, 0U, transitions, 1U, characters}) {
        append(bytes, count);
    }
    for (std::uint32_t each = 0; each < transitions; ++each) {
        append(bytes, beginning);
    }
    bytes.append(transitions, '\0');
    append(bytes, offset);
    bytes += '\0';  // no daylight-saving time
    bytes += '\0';  // the name begins at the first character
    bytes += name;
    bytes += '\0';
}

}  // namespace

std::string zoneFile(const TimeZoneRule& rule) {
    std::string bytes;
    // The block of version 1, with times of 32 bits, is skipped by every reader of version 2.
    appendBlock(bytes, 0, rule.standardOffset, rule.standardName);
    appendBlock(bytes, 1, rule.standardOffset, rule.standardName);
    return bytes + '\n' + rule.text + '\n';
}

namespace {

void write(const std::filesystem::path& file, const std::string& content) {
    if (file.empty()) {
        return;
    }
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(file))) {
        throw std::runtime_error(
            fmt::format("{} is a symbolic link, whose target is not overwritten", file.string()));
    }
    support::replaceFile(file, content);
}

}  // namespace

void writeTimeZone(const TimeZoneFiles& files, const varoLib_s_sntpTimeZone& zone) {
    const TimeZoneRule rule = timeZoneRule(zone);
    write(files.localtime, zoneFile(rule));
    write(files.rule, rule.text + '\n');
}

}  // namespace services
