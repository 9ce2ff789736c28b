#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"
#include "mngctl/zone/zoneSettings.h"

#include <fmt/format.h>

#include <optional>

namespace mngctl {

namespace {

constexpr int minutesPerHour = 60;
constexpr int hourFactor = 100;
constexpr int sunday = 7;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Reads a rule from its beginning to its end.
class RuleReader {
public:
    explicit RuleReader(std::string_view text) : whole(text), rest(text) {}

    ZoneSettings read() {
        ZoneSettings zone;
        zone.name = readName();
        zone.offset = -readOffset();
        if (rest.empty()) {
            return zone;
        }
        readName();
        const bool saysOffset = !rest.empty() && rest.front() != ',';
        zone.dstOffset = saysOffset ? -readOffset() - zone.offset : minutesPerHour;
        if (rest.empty()) {
            cannotKeep("it does not say when daylight-saving time starts and ends");
        }
        zone.start = readDate();
        zone.end = readDate();
        if (!rest.empty()) {
            wrong(fmt::format("'{}' follows its end", printable(rest)));
        }
        return zone;
    }

private:
    std::string_view whole;
    std::string_view rest;

    [[noreturn]] void wrong(const std::string& why) const {
        throw UsageError(
            fmt::format("'{}' is no rule of a time zone such as CET-1CEST,M3.5.0,M10.5.0/3: {}",
                        printable(whole), why));
    }
    [[noreturn]] void cannotKeep(const std::string& why) const {
        throw UsageError(fmt::format("the board cannot keep the time zone rule '{}': {}",
                                     printable(whole), why));
    }

    bool take(char c) {
        if (rest.empty() || rest.front() != c) {
            return false;
        }
        rest.remove_prefix(1);
        return true;
    }

    std::string readName() {
        const bool isQuoted = take('<');
        std::size_t size = 0;
        const auto belongs = [&](char c) {
            return isLetter(c) || (isQuoted && (isDigit(c) || c == '+' || c == '-'));
        };
        while (size < rest.size() && belongs(rest[size])) {
            ++size;
        }
        std::string name(rest.substr(0, size));
        rest.remove_prefix(size);
        if (size < 3) {
            wrong("a name has three letters or more");
        }
        if (isQuoted && !take('>')) {
            wrong("a name that begins with < ends with >");
        }
        return name;
    }

    int readNumber(int highest, const char* what) {
        constexpr std::size_t longest = 3;
        int value = 0;
        std::size_t size = 0;
        while (size < rest.size() && isDigit(rest[size]) && size < longest) {
            value = 10 * value + (rest[size++] - '0');
        }
        if (size == 0 || value > highest) {
            wrong(fmt::format("expected {}, at most {}", what, highest));
        }
        rest.remove_prefix(size);
        return value;
    }

    /// [+-]hours[:minutes[:seconds]], in minutes.
    int readTime(int highestHour) {
        const bool isNegative = take('-');
        if (!isNegative) {
            take('+');
        }
        int minutes = minutesPerHour * readNumber(highestHour, "hours");
        if (take(':')) {
            minutes += readNumber(minutesPerHour - 1, "minutes");
        }
        if (take(':') && readNumber(minutesPerHour - 1, "seconds") != 0) {
            cannotKeep("it has seconds");
        }
        return isNegative ? -minutes : minutes;
    }

    int readOffset() {
        constexpr int highest = 24;
        return readTime(highest);
    }

    SwitchDate readDate() {
        if (!take(',')) {
            wrong("a comma and a date are missing");
        }
        if (!rest.empty() && (rest.front() == 'J' || isDigit(rest.front()))) {
            cannotKeep("it counts days of the year, and the board weeks of a month");
        }
        if (!take('M')) {
            wrong("expected a date such as M3.5.0, month, week and day");
        }
        SwitchDate date;
        date.month = readNumber(12, "a month");
        if (!take('.')) {
            wrong("expected a dot after the month");
        }
        date.week = readNumber(5, "a week");
        if (!take('.')) {
            wrong("expected a dot after the week");
        }
        const int day = readNumber(6, "a day, 0 for Sunday");
        date.day = day == 0 ? sunday : day;
        date.time = 2 * hourFactor;
        if (take('/')) {
            constexpr int week = 167;
            const int minutes = readTime(week);
            date.time = minutes / minutesPerHour * hourFactor + minutes % minutesPerHour;
            if (minutes < 0 || minutes >= 24 * minutesPerHour) {
                cannotKeep("a change is not on the day that the rule names");
            }
        }
        if (!date.isValid()) {
            wrong("months and weeks count from 1");
        }
        return date;
    }
};

}  // namespace

ZoneSettings parseRule(std::string_view rule) { return RuleReader(rule).read(); }

}  // namespace mngctl
