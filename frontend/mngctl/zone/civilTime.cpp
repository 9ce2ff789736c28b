#include "mngctl/zone/civilTime.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <array>
#include <vector>

namespace mngctl {

namespace {

using namespace std::chrono;

// What the clock of a machine can be set to, and back to.
constexpr int firstYear = 1970;
constexpr int lastYear = 2199;

/// Numbers of the given sizes with the separator between; empty if the text is anything else.
std::vector<int> numbers(std::string_view text, char separator,
                         const std::vector<std::size_t>& sizes) {
    std::vector<int> result;
    for (const std::size_t size : sizes) {
        if (!result.empty()) {
            if (text.empty() || text.front() != separator) {
                return {};
            }
            text.remove_prefix(1);
        }
        if (text.size() < size) {
            return {};
        }
        int value = 0;
        for (const char c : text.substr(0, size)) {
            if (c < '0' || c > '9') {
                return {};
            }
            value = 10 * value + (c - '0');
        }
        result.push_back(value);
        text.remove_prefix(size);
    }
    return text.empty() ? result : std::vector<int>();
}

std::optional<year_month_day> readDate(std::string_view text) {
    const auto make = [](int y, int m, int d) {
        return year(y) / month(static_cast<unsigned>(m)) / day(static_cast<unsigned>(d));
    };
    if (const auto iso = numbers(text, '-', {4, 2, 2}); !iso.empty()) {
        return make(iso[0], iso[1], iso[2]);
    }
    if (const auto dayFirst = numbers(text, '/', {2, 2, 4}); !dayFirst.empty()) {
        return make(dayFirst[2], dayFirst[1], dayFirst[0]);
    }
    return std::nullopt;
}

std::optional<seconds> readTime(std::string_view text) {
    auto parts = numbers(text, ':', {2, 2, 2});
    if (parts.empty()) {
        parts = numbers(text, ':', {2, 2});
    }
    if (parts.empty() || parts[0] > 23 || parts[1] > 59 || (parts.size() > 2 && parts[2] > 59)) {
        return std::nullopt;
    }
    return hours(parts[0]) + minutes(parts[1]) + seconds(parts.size() > 2 ? parts[2] : 0);
}

struct Fields {
    year_month_day date;
    hh_mm_ss<seconds> time;
};

Fields fieldsOf(LocalTime time) {
    const auto midnight = floor<days>(time);
    return {year_month_day(midnight), hh_mm_ss<seconds>(time - midnight)};
}

std::string clockText(const hh_mm_ss<seconds>& time) {
    return fmt::format("{:02}:{:02}:{:02}", time.hours().count(), time.minutes().count(),
                       time.seconds().count());
}

}  // namespace

LocalTime parseCivilTime(std::string_view date, std::string_view time) {
    const auto onDay = readDate(date);
    if (!onDay) {
        throw UsageError(
            fmt::format("expected a date such as 31/12/2024 (day first) or 2024-12-31, not '{}'",
                        printable(date)));
    }
    if (!onDay->ok()) {
        throw UsageError(fmt::format("the calendar has no day {}", date));
    }
    const int inYear = static_cast<int>(onDay->year());
    if (inYear < firstYear || inYear > lastYear) {
        throw UsageError(fmt::format("the clock can be set to the years {} to {}, not {}",
                                     firstYear, lastYear, inYear));
    }
    const auto atTime = readTime(time);
    if (!atTime) {
        throw UsageError(
            fmt::format("expected a time from 00:00:00 to 23:59:59, not '{}'", printable(time)));
    }
    return local_days(*onDay) + *atTime;
}

std::optional<LocalTime> readBoardTime(std::string_view text) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) {
        return std::nullopt;
    }
    const auto time = readTime(text.substr(0, blank));
    const auto date = readDate(text.substr(blank + 1));
    if (!time || !date || !date->ok()) {
        return std::nullopt;
    }
    return local_days(*date) + *time;
}

std::string boardTime(LocalTime time) {
    const Fields fields = fieldsOf(time);
    return fmt::format("{:02}/{:02}/{:04} {}", static_cast<unsigned>(fields.date.day()),
                       static_cast<unsigned>(fields.date.month()),
                       static_cast<int>(fields.date.year()), clockText(fields.time));
}

std::string formatCivilTime(LocalTime time) {
    const Fields fields = fieldsOf(time);
    return fmt::format("{:04}-{:02}-{:02} {}", static_cast<int>(fields.date.year()),
                       static_cast<unsigned>(fields.date.month()),
                       static_cast<unsigned>(fields.date.day()), clockText(fields.time));
}

}  // namespace mngctl
