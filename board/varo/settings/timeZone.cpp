#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsTime.h"
#include "board/varo/settings/singleRecord.h"
#include "varo/varoLib.h"

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

void checkZone(const TimeZone& zone) {
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
    const TimeZone& factory = timeZoneGroup().factory();
    return std::string_view(zone.name) == factory.name && zone.offset == factory.offset &&
           zone.dstOffset == factory.dstOffset && equal(startOf(zone), startOf(factory)) &&
           equal(endOf(zone), endOf(factory));
}

TimeZone storedZone(RecordStore& store) {
    TimeZone zone = store.session().read(timeZoneGroup());
    zone.preset = isFactory(zone) ? 1 : 0;
    return zone;
}

}  // namespace

void applyTimeZone(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.timeZone, "time zone", [&] { return storedZone(store); });
}

}  // namespace varo

int varoGetSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return varo::answer(__func__, [&] {
        varoLib_s_sntpTimeZone& read = varo::required(zone);
        const auto opened = varo::Library::instance().opened();
        read = varo::storedZone(opened->store);
    });
}

int varoUpdateSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return varo::updateSingle(__func__, varo::timeZoneGroup(), zone, varo::checkZone,
                              varo::applyTimeZone);
}

int varoUpdateSntpTimeZoneAlt(varoLib_s_sntpTimeZone* zone) {
    return varo::answer(__func__, [&] {
        const varoLib_s_sntpTimeZone& given = varo::required(zone);
        varo::checkName(given);
        varo::changeSingle(
            varo::timeZoneGroup(), varo::applyTimeZone,
            [&](varoLib_s_sntpTimeZone& stored) { varo::copyInto(stored.name, given.name); });
    });
}
