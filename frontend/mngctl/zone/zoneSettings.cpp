#include "mngctl/zone/zoneSettings.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace mngctl {

namespace {

std::string databaseDirectory() {
    const char* const named = std::getenv("TZDIR");
    return named == nullptr || *named == '\0' ? "/usr/share/zoneinfo" : named;
}

/// From version 2 on, a file ends with the rule between two line ends (RFC 8536).
std::string footer(const std::string& bytes) {
    constexpr std::size_t versionPlace = 4;
    const bool hasFooter = bytes.starts_with("TZif") && bytes.size() > versionPlace &&
                           bytes[versionPlace] >= '2' && bytes.back() == '\n';
    if (!hasFooter) {
        return {};
    }
    const std::size_t begin = bytes.rfind('\n', bytes.size() - 2);
    return begin == std::string::npos ? std::string()
                                      : bytes.substr(begin + 1, bytes.size() - begin - 2);
}

}  // namespace

std::string ruleOfZone(const std::string& name) {
    const std::string directory = databaseDirectory();
    const auto file = std::filesystem::path(directory) / name;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        throw UsageError(
            fmt::format("there is no zone '{}' in {}: give its rule after the name, such as "
                        "CET-1CEST,M3.5.0,M10.5.0/3",
                        printable(name), directory));
    }
    std::ifstream stream(file, std::ios::binary);
    std::string rule =
        footer({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
    if (rule.empty()) {
        throw UsageError(fmt::format("{} has no rule for the time to come: give one after the name",
                                     file.string()));
    }
    return rule;
}

namespace {

using namespace std::chrono;

constexpr int minutesPerHour = 60;
constexpr int hourFactor = 100;
constexpr int lastWeek = 5;
constexpr int daysPerWeek = 7;
// What a rule means that does not say.
constexpr int customaryDstOffset = 60;
constexpr int customaryTime = 200;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// The board takes such a name as the abbreviation of standard time.
bool isAbbreviation(std::string_view name) {
    return name.size() >= 3 && name.size() <= 6 && std::ranges::all_of(name, isLetter) &&
           name != "NONE";
}

std::string numericName(int offset) {
    const int amount = std::abs(offset);
    const std::string hours =
        fmt::format("{}{:02}", offset < 0 ? '-' : '+', amount / minutesPerHour);
    const int rest = amount % minutesPerHour;
    return rest == 0 ? fmt::format("<{}>", hours) : fmt::format("<{}{:02}>", hours, rest);
}

/// Counted west of UTC.
std::string ruleOffset(int offset) {
    const int amount = std::abs(offset);
    const std::string hours = fmt::format("{}{}", offset > 0 ? "-" : "", amount / minutesPerHour);
    const int rest = amount % minutesPerHour;
    return rest == 0 ? hours : fmt::format("{}:{:02}", hours, rest);
}

minutes timeOfDay(const SwitchDate& date) {
    return hours(date.time / hourFactor) + minutes(date.time % hourFactor);
}

LocalTime dateIn(year when, const SwitchDate& date) {
    const month inMonth(static_cast<unsigned>(date.month));
    const weekday onDay(static_cast<unsigned>(date.day % daysPerWeek));
    const local_days day =
        date.week == lastWeek
            ? local_days(when / inMonth / onDay[last])
            : local_days(when / inMonth / onDay[static_cast<unsigned>(date.week)]);
    return day + timeOfDay(date);
}

/// A change on the scale of UTC.
struct Moment {
    LocalTime utc;
    bool toDst;
};

std::vector<Moment> momentsAround(const ZoneSettings& zone, year middle, int yearsAfter) {
    std::vector<Moment> moments;
    for (year each = middle - years(2); each <= middle + years(yearsAfter); ++each) {
        moments.push_back({dateIn(each, zone.start) - minutes(zone.offset), true});
        moments.push_back({dateIn(each, zone.end) - minutes(zone.offset + zone.dstOffset), false});
    }
    std::ranges::sort(moments, {}, &Moment::utc);
    return moments;
}

}  // namespace

bool SwitchDate::isValid() const {
    return month >= 1 && month <= 12 && week >= 1 && week <= lastWeek && day >= 1 &&
           day <= daysPerWeek && time >= 0 && time < 24 * hourFactor &&
           time % hourFactor < minutesPerHour;
}

std::string formatOffset(int offset) {
    const int amount = std::abs(offset);
    return fmt::format("{}{:02}:{:02}", offset < 0 ? '-' : '+', amount / minutesPerHour,
                       amount % minutesPerHour);
}

std::string formatDate(const SwitchDate& date) {
    std::string text = fmt::format("M{}.{}.{}", date.month, date.week, date.day % daysPerWeek);
    if (date.time % hourFactor != 0) {
        text += fmt::format("/{}:{:02}", date.time / hourFactor, date.time % hourFactor);
    } else if (date.time != customaryTime) {
        text += fmt::format("/{}", date.time / hourFactor);
    }
    return text;
}

std::string formatRule(const ZoneSettings& zone) {
    std::string rule;
    if (isAbbreviation(zone.name)) {
        rule = zone.name;
    } else {
        rule = zone.offset == 0 && !zone.observesDst() ? "UTC" : numericName(zone.offset);
    }
    rule += ruleOffset(zone.offset);
    if (!zone.observesDst()) {
        return rule;
    }
    const int dst = zone.offset + zone.dstOffset;
    rule += numericName(dst);
    if (zone.dstOffset != customaryDstOffset) {
        rule += ruleOffset(dst);
    }
    return fmt::format("{},{},{}", rule, formatDate(zone.start), formatDate(zone.end));
}

Outlook outlook(const ZoneSettings& zone, LocalTime now, std::size_t count) {
    Outlook result;
    if (!zone.observesDst()) {
        return result;
    }
    const year_month_day today{floor<days>(now)};
    const auto moments = momentsAround(zone, today.year(), static_cast<int>(count) + 1);
    const auto isDstAt = [&](LocalTime utc) {
        bool isDst = false;
        for (const Moment& moment : moments) {
            if (moment.utc <= utc) {
                isDst = moment.toDst;
            }
        }
        return isDst;
    };
    const LocalTime inDst = now - minutes(zone.offset + zone.dstOffset);
    result.isDst = isDstAt(inDst);
    const LocalTime utc = result.isDst ? inDst : now - minutes(zone.offset);
    for (const Moment& moment : moments) {
        if (moment.utc <= utc || result.changes.size() == count) {
            continue;
        }
        const minutes standard(zone.offset);
        const minutes dst(zone.offset + zone.dstOffset);
        result.changes.push_back({moment.utc + (moment.toDst ? standard : dst),
                                  moment.utc + (moment.toDst ? dst : standard), moment.toDst});
    }
    return result;
}

}  // namespace mngctl
