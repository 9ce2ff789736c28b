#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace varo {

namespace {

using TimeZone = varoLib_s_sntpTimeZone;

// Minutes east of UTC: what zones have had, from the date line to the date line.
constexpr std::int64_t westmost = -12 * 60;
constexpr std::int64_t eastmost = 14 * 60;
constexpr std::int64_t largestDstOffset = 3 * 60;
constexpr std::int64_t lastWeek = 5;
constexpr std::int64_t lastTime = 2359;
constexpr int minutesPerHour = 60;
constexpr int hourFactor = 100;

/// Start or end of daylight-saving time.
struct SwitchDate {
    const char* which;
    std::int16_t month;
    std::int16_t week;
    std::int16_t day;
    std::int32_t time;

    bool isUnset() const { return month == 0 && week == 0 && day == 0 && time == 0; }
};

SwitchDate startOf(const TimeZone& zone) {
    return {"start", zone.dstSMonth, zone.dstSWeek, zone.dstSDayInWeek, zone.dstSTime};
}

SwitchDate endOf(const TimeZone& zone) {
    return {"end", zone.dstEMonth, zone.dstEWeek, zone.dstEDayInWeek, zone.dstETime};
}

/// Nothing but zeros stands for a date that is not set. Start and end are checked one by one, since
/// they are set one by one.
void checkDate(const SwitchDate& date) {
    if (date.isUnset()) {
        return;
    }
    const auto named = [&](const char* part) { return fmt::format("{} {}", date.which, part); };
    checkRange(named("month"), date.month, 1, 12);
    checkRange(named("week"), date.week, 1, lastWeek);
    checkRange(named("day"), date.day, 1, 7);
    checkRange(named("time"), date.time, 0, lastTime);
    if (date.time % hourFactor >= minutesPerHour) {
        throw Failure(invalidValue,
                      fmt::format("{}: {} is not an hour and a minute", named("time"), date.time));
    }
}

/// The name leads to a file below the machine's zone directory, and nowhere else. Whether there is
/// such a zone is known to whoever puts it into force.
void checkName(const TimeZone& zone) {
    const std::string_view name = textIn("name", zone.name);
    const bool isPlain =
        std::all_of(name.begin(), name.end(), [](unsigned char c) { return c > ' ' && c < 0x7f; });
    if (!isPlain || name.starts_with('/') || name.find("..") != std::string_view::npos) {
        throw Failure(invalidValue, "name: it is not that of a time zone");
    }
}

void check(const TimeZone& zone) {
    checkName(zone);
    checkRange("offset", zone.offset, westmost, eastmost);
    checkRange("daylight-saving offset", zone.dstOffset, -largestDstOffset, largestDstOffset);
    checkDate(startOf(zone));
    checkDate(endOf(zone));
}

bool equal(const SwitchDate& left, const SwitchDate& right) {
    return left.month == right.month && left.week == right.week && left.day == right.day &&
           left.time == right.time;
}

bool isFactory(const TimeZone& zone) {
    const TimeZone& factory = timeZoneSetting().factory();
    return std::string_view(zone.name) == factory.name && zone.offset == factory.offset &&
           zone.dstOffset == factory.dstOffset && equal(startOf(zone), startOf(factory)) &&
           equal(endOf(zone), endOf(factory));
}

}  // namespace

const Setting<varoLib_s_sntpTimeZone>& timeZoneSetting() {
    static const auto& setting = *new Setting<TimeZone>({
        .group = {"time_zone",
                  Rows::single,
                  {
                      .name = "NONE",
                      .offset = 0,
                      .dstOffset = 0,
                      .dstSMonth = 3,
                      .dstSWeek = 4,
                      .dstSDayInWeek = 7,
                      .dstSTime = 200,
                      .dstEMonth = 10,
                      .dstEWeek = 5,
                      .dstEDayInWeek = 7,
                      .dstETime = 200,
                      .preset = 0,
                  },
                  {
                      column("name", &TimeZone::name),
                      column("offset_minutes", &TimeZone::offset),
                      column("dst_minutes", &TimeZone::dstOffset),
                      column("start_month", &TimeZone::dstSMonth),
                      column("start_week", &TimeZone::dstSWeek),
                      column("start_day", &TimeZone::dstSDayInWeek),
                      column("start_time", &TimeZone::dstSTime),
                      column("end_month", &TimeZone::dstEMonth),
                      column("end_week", &TimeZone::dstEWeek),
                      column("end_day", &TimeZone::dstEDayInWeek),
                      column("end_time", &TimeZone::dstETime),
                  }},
        .check = check,
        .complete = [](TimeZone& zone) { zone.preset = isFactory(zone) ? 1 : 0; },
        .apply = toHost("time zone", &Appliers::timeZone),
    });
    return setting;
}

}  // namespace varo

int varoGetSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return varo::timeZoneSetting().read(__func__, zone);
}

int varoUpdateSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return varo::timeZoneSetting().update(__func__, zone);
}

int varoUpdateSntpTimeZoneAlt(varoLib_s_sntpTimeZone* zone) {
    return varo::answer(__func__, [&] {
        const varoLib_s_sntpTimeZone& given = varo::required(zone);
        varo::checkName(given);
        varo::timeZoneSetting().change(
            [&](varoLib_s_sntpTimeZone& stored) { varo::copyInto(stored.name, given.name); });
    });
}
