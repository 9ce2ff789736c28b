// Wall clock and time zone. The clock is the operating system's; the zone and its daylight-saving
// rule are one record of varoLib's, changed by read-modify-write. A failed read is only logged: the
// write goes ahead with what it left.

#include "network/Network.h"
#include "network/boundedCopy.h"
#include "network/localTime.h"
#include "varo/varoLib.h"

#include <sys/time.h>

#include <cstddef>
#include <ctime>

namespace {

// The clock is set by the date first and read by the time first.
constexpr const char* setFormat = "%d/%m/%Y %H:%M:%S";
constexpr const char* getFormat = "%T %d/%m/%Y";

constexpr std::size_t timeTextSize = 30;

/// Characters of the zone's name that getTimezoneInfo hands out, the terminator not counted.
constexpr std::size_t nameLimit = 199;

/// How a changed time-zone record is written, and the call's name in messages.
struct TimeZoneUpdate {
    int (*call)(varoLib_s_sntpTimeZone* zone);
    const char* name;
};

constexpr TimeZoneUpdate wholeUpdate{varoUpdateSntpTimeZone, "varoUpdateSntpTimeZone"};
constexpr TimeZoneUpdate nameUpdate{varoUpdateSntpTimeZoneAlt, "varoUpdateSntpTimeZoneAlt"};

/// Months, weeks and days are kept in 16 bits.
std::int16_t shortened(unsigned int value) { return static_cast<std::int16_t>(value); }

}  // namespace

int Network::setTimeInfo(const std::string& text) {
    return withExclusiveLock([&] {
        std::tm local{};
        if (strptime(text.c_str(), setFormat, &local) == nullptr) {
            return -1;
        }
        local.tm_isdst = -1;  // the system decides
        timeval now{};
        now.tv_sec = std::mktime(&local);
        return settimeofday(&now, nullptr) == 0 ? 0 : -1;
    });
}

int Network::getTimeInfo(char* time) {
    return withSharedLock([&] {
        if (reportIf(time == nullptr,
                     "[networkBLE]: getTimeInfo failed! One of input args is NULL. time: %p\n",
                     address(time))) {
            return -1;
        }
        timeval now{};
        gettimeofday(&now, nullptr);
        std::tm local{};
        if (reportIf(!toLocalTime(now.tv_sec, local),
                     "[networkBLE]: localtime (&curtime) error\n")) {
            return -1;
        }
        char text[timeTextSize] = {};
        std::strftime(text, sizeof text, getFormat, &local);
        copyBounded(time, text, sizeof text - 1);
        return 0;
    });
}

/// Kept in the interface; setSntpTimezone sets the offset.
int Network::setTimezoneOffset(int offset) {
    return withExclusiveLock([&] {
        trace("[networkBLE]: setTimezoneOffset: offset=%d\n", offset);
        return -1;
    });
}

template <class Update, class Change>
int Network::changeTimeZone(const char* operation, const Update& update, Change change) {
    varoLib_s_sntpTimeZone zone{};
    if (reportIf(varoGetSntpTimeZone(&zone) != 0,
                 "[networkBLE]: %s: varoGetSntpTimeZone has failed!\n", operation)) {
        zone = {};  // goes on from nothing, whatever the read has left
    }
    change(zone);
    const int status = update.call(&zone);
    return resultOf(status, "[networkBLE]: %s: %s has failed! Return value: %d\n", operation,
                    update.name, status);
}

int Network::setTimezoneName(const char* name) {
    return withExclusiveLock([&] {
        if (reportIf(name == nullptr,
                     "[networkBLE]: setTimezoneName failed! One of input args is NULL. name: %p\n",
                     address(name))) {
            return -1;
        }
        return changeTimeZone("setTimezoneName", nameUpdate,
                              [&](varoLib_s_sntpTimeZone& zone) { copyBounded(zone.name, name); });
    });
}

int Network::setSntpTimezone(int offset, const char* linuxName) {
    return withExclusiveLock([&] {
        if (reportIf(
                linuxName == nullptr,
                "[networkBLE]: setSntpTimezone failed! One of input args is NULL. linuxName: %p\n",
                address(linuxName))) {
            return -1;
        }
        return changeTimeZone("setSntpTimezone", wholeUpdate, [&](varoLib_s_sntpTimeZone& zone) {
            zone.offset = offset;
            copyBounded(zone.name, linuxName);
        });
    });
}

int Network::setSntpTimezoneDstStart(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                     int time) {
    return withExclusiveLock([&] {
        return changeTimeZone("setSntpTimezoneDstStart", wholeUpdate,
                              [&](varoLib_s_sntpTimeZone& zone) {
                                  zone.dstSMonth = shortened(month);
                                  zone.dstSWeek = shortened(week);
                                  zone.dstSDayInWeek = shortened(dayInWeek);
                                  zone.dstSTime = time;
                              });
    });
}

int Network::setSntpTimezoneDstEnd(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                   int time) {
    return withExclusiveLock([&] {
        return changeTimeZone("setSntpTimezoneDstEnd", wholeUpdate,
                              [&](varoLib_s_sntpTimeZone& zone) {
                                  zone.dstEMonth = shortened(month);
                                  zone.dstEWeek = shortened(week);
                                  zone.dstEDayInWeek = shortened(dayInWeek);
                                  zone.dstETime = time;
                              });
    });
}

int Network::setSntpTimezoneDstOffset(int dstOffset) {
    return withExclusiveLock([&] {
        return changeTimeZone("setSntpTimezoneDstOffset", wholeUpdate,
                              [&](varoLib_s_sntpTimeZone& zone) { zone.dstOffset = dstOffset; });
    });
}

int Network::getTimezoneInfo(int* offset, char* name) {
    return withSharedLock([&] {
        if (reportIf(
                offset == nullptr || name == nullptr,
                "[networkBLE]: getTimezoneInfo failed! One of input args is NULL. offset: %p, name: %p\n",
                address(offset), address(name))) {
            return -1;
        }
        varoLib_s_sntpTimeZone zone{};
        if (reportIf(varoGetSntpTimeZone(&zone) != 0,
                     "[networkBLE]: getTimezoneInfo: varoGetSntpTimeZone has failed!\n")) {
            return -1;
        }
        copyBounded(name, zone.name, nameLimit);
        *offset = zone.offset;
        return 0;
    });
}

int Network::getSntpTimezoneInfo(rpcNetworkSntpTimezone* info) {
    return withSharedLock([&] {
        varoLib_s_sntpTimeZone zone{};
        if (reportIf(varoGetSntpTimeZone(&zone) != 0,
                     "[networkBLE]: getSntpTimezoneInfo: varoGetSntpTimeZone has failed!\n")) {
            return -1;
        }
        copyBounded(info->name, zone.name);
        info->offset = zone.offset;
        info->dstOffset = zone.dstOffset;
        info->dstSMonth = zone.dstSMonth;
        info->dstSWeek = zone.dstSWeek;
        info->dstSDayInWeek = zone.dstSDayInWeek;
        info->dstSTime = zone.dstSTime;
        info->dstEMonth = zone.dstEMonth;
        info->dstEWeek = zone.dstEWeek;
        info->dstEDayInWeek = zone.dstEDayInWeek;
        info->dstETime = zone.dstETime;
        info->preset = zone.preset;
        trace(
            "[networkBLE]: getSntpTimezoneInfo: name=%s, offset=%d, dstOffset=%d, dstSMonth=%d, dstSWeek=%d, dstSDayInWeek=%d, dstSTime=%d, dstEMonth=%d, dstEWeek=%d, dstEDayInWeek=%d, dstETime=%d, preset=%d\n",
            info->name, info->offset, info->dstOffset, info->dstSMonth, info->dstSWeek,
            info->dstSDayInWeek, info->dstSTime, info->dstEMonth, info->dstEWeek,
            info->dstEDayInWeek, info->dstETime, info->preset);
        return 0;
    });
}
