#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"
#include "mngctl/zone/civilTime.h"
#include "mngctl/zone/zoneSettings.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

constexpr std::size_t changesShown = 2;
constexpr std::size_t longestName = 199;

bool hasRule(const ZoneSettings& zone) {
    return !zone.observesDst() || (zone.start.isValid() && zone.end.isValid());
}

/// The board's local time. Throws Refused when it cannot tell.
LocalTime readTime(Session& session) {
    const auto answer = session.ask(rpc_network_get_time_info_1);
    if (answer.result != rpcNetworkDone) {
        throw Refused("the board cannot tell the time: " +
                      describeOutcome(static_cast<int>(answer.result)));
    }
    const std::string text(answer.time, strnlen(answer.time, sizeof answer.time));
    const auto time = readBoardTime(text);
    if (!time) {
        throw NoAnswer(
            fmt::format("the board tells the time as '{}', which cannot be read", printable(text)));
    }
    return *time;
}

/// The board's time zone; of its name the first 99 characters.
ZoneSettings readZone(Session& session) {
    const auto answer = session.ask(rpc_network_get_sntp_timezone_info_1);
    return {std::string(answer.name, strnlen(answer.name, sizeof answer.name)),
            answer.offset,
            answer.dstOffset,
            {answer.dstSMonth, answer.dstSWeek, answer.dstSDayInWeek, answer.dstSTime},
            {answer.dstEMonth, answer.dstEWeek, answer.dstEDayInWeek, answer.dstETime}};
}

// The zone's rule; what the board says can be out of range, then there is none.

std::string ruleOrNone(const ZoneSettings& zone) {
    return hasRule(zone) ? formatRule(zone) : "none";
}

Json ruleOrNull(const ZoneSettings& zone) {
    return hasRule(zone) ? Json(formatRule(zone)) : Json();
}

// The clock.

struct Shown {
    Json json;
    std::string lines;
};

Shown clockOf(Session& session) {
    const LocalTime now = readTime(session);
    const ZoneSettings zone = readZone(session);
    const std::string time = formatCivilTime(now);
    const std::string rule = ruleOrNone(zone);
    return {Json{{"localTime", time}, {"timeZone", zone.name}, {"rule", ruleOrNull(zone)}},
            fmt::format("local time: {}\ntime zone: {} ({})\n", time, orNone(zone.name), rule)};
}

void showClock(Session& session) {
    const Shown clock = clockOf(session);
    session.print(clock.json, clock.lines);
}

/// How well the clock is kept belongs to what it says.
void show(Session& session) {
    Shown shown = clockOf(session);
    const Json ntp = readNtp(session);
    shown.json["ntp"] = ntp;
    session.print(shown.json, shown.lines + describeNtp(ntp));
}

void set(Session& session, const std::vector<std::string>& words) {
    if (words.size() != 2) {
        throw UsageError(
            fmt::format("expected a date and a time such as 31/12/2024 23:59:30, got {} word{}",
                        words.size(), words.size() == 1 ? "" : "s"));
    }
    const LocalTime time = parseCivilTime(words[0], words[1]);
    std::string text = boardTime(time);
    const Change change{"set the clock to " + formatCivilTime(time),
                        request(session, rpc_network_set_time_info_1, text.data())};
    carryOutOrExplain(change, [] {
        return "the business-logic process needs the right to set the machine's clock "
               "(CAP_SYS_TIME), which nobody has in a box or a container";
    });
    readBack(session, showClock);
}

// The zone.

std::string utcOffset(int minutes) { return "UTC" + formatOffset(minutes); }

/// What local time is ahead of UTC after a change.
int offsetAfter(const ZoneSettings& zone, const ZoneChange& change) {
    return zone.offset + (change.toDst ? zone.dstOffset : 0);
}

Json describe(const ZoneSettings& zone, const Outlook& future) {
    Json changes = Json::array();
    for (const ZoneChange& change : future.changes) {
        changes.push_back({{"from", formatCivilTime(change.before)},
                           {"to", formatCivilTime(change.after)},
                           {"offsetMinutes", offsetAfter(zone, change)}});
    }
    Json dst;
    if (zone.observesDst()) {
        dst = Json{{"offsetMinutes", zone.dstOffset},
                   {"start", formatDate(zone.start)},
                   {"end", formatDate(zone.end)},
                   {"inForce", future.isDst}};
    }
    return Json{{"name", zone.name},
                {"rule", ruleOrNull(zone)},
                {"offsetMinutes", zone.offset},
                {"daylightSaving", dst},
                {"nextChanges", changes}};
}

std::string changeLines(const ZoneSettings& zone, const Outlook& future) {
    std::string lines;
    for (const ZoneChange& change : future.changes) {
        lines += fmt::format(
            "{}{} becomes {} ({})\n", lines.empty() ? "next changes: " : "              ",
            formatCivilTime(change.before), formatCivilTime(change.after).substr(11),
            utcOffset(offsetAfter(zone, change)));
    }
    return lines.empty() ? "next changes: none\n" : lines;
}

void showZone(Session& session) {
    const ZoneSettings zone = readZone(session);
    const Outlook future =
        hasRule(zone) ? outlook(zone, readTime(session), changesShown) : Outlook{};
    const int now = zone.offset + (future.isDst ? zone.dstOffset : 0);
    session.print(
        describe(zone, future),
        fmt::format("time zone: {}\nrule: {}\nnow: {}{}\n{}", orNone(zone.name), ruleOrNone(zone),
                    utcOffset(now), future.isDst ? ", daylight-saving time" : "",
                    changeLines(zone, future)));
}

/// A name as in the zone database; the board refuses what could lead out of it.
void checkName(std::string_view name) {
    if (name.empty()) {
        throw UsageError("the name of the time zone is empty");
    }
    if (name.size() > longestName) {
        throw UsageError(fmt::format("the name of a time zone has at most {} characters, not {}",
                                     longestName, name.size()));
    }
    const bool isPlain = std::ranges::all_of(name, [](char c) { return c > ' ' && c < '\x7f'; });
    if (!isPlain || name.starts_with('/') || name.find("..") != std::string_view::npos) {
        throw UsageError(fmt::format("'{}' is no name of a time zone such as Europe/Vienna or CET",
                                     printable(name)));
    }
}

template <class Date>
Date dateArgument(const SwitchDate& date) {
    return {static_cast<unsigned>(date.month), static_cast<unsigned>(date.week),
            static_cast<unsigned>(date.day), date.time};
}

/// The board keeps the parts of a zone one by one; the switch to daylight-saving time comes last.
/// The changes live no longer than the zone.
std::vector<Change> changesTo(Session& session, ZoneSettings& zone) {
    std::vector<Change> changes{
        {fmt::format("set the time zone {} with {}", zone.name, utcOffset(zone.offset)),
         request(session, rpc_network_set_sntp_timezone_1, {zone.offset, zone.name.data()})}};
    if (zone.observesDst()) {
        changes.push_back({"set the start of daylight-saving time",
                           request(session, rpc_network_set_sntp_timezone_dst_start_1,
                                   dateArgument<rpc_network_set_sntp_timezone_dst_start_1_argument>(
                                       zone.start))});
        changes.push_back(
            {"set the end of daylight-saving time",
             request(session, rpc_network_set_sntp_timezone_dst_end_1,
                     dateArgument<rpc_network_set_sntp_timezone_dst_end_1_argument>(zone.end))});
    }
    changes.push_back(
        {"set the offset of daylight-saving time",
         request(session, rpc_network_set_sntp_timezone_dst_offset_1, zone.dstOffset)});
    return changes;
}

void setZone(Session& session, const std::string& name, const std::string& rule) {
    checkName(name);
    ZoneSettings zone = parseRule(rule.empty() ? ruleOfZone(name) : rule);
    zone.name = name;
    session.streams.err << tellCutName(name);
    carryOut(changesTo(session, zone));
    readBack(session, showZone);
}

void addTimeZone(Command& parent) {
    Command& noun = parent.addNoun("zone", "Time zone and daylight-saving time",
                                   {"time zone show", "time zone set Europe/Vienna"});
    noun.addShow("show", "Show the zone, its rule and the next two changes it means", showZone);

    Command& setCommand = noun.addCommand(
        "set",
        "Set the zone, by a name of this machine's zone database or by a rule of the variable TZ",
        {"time zone set Europe/Vienna", "time zone set UTC",
         "time zone set office CET-1CEST,M3.5.0,M10.5.0/3"});
    const Argument& name = setCommand.addArgument("NAME", "Name of the zone");
    const Argument& rule = setCommand.addOptionalArgument(
        "RULE", "Its rule (tzset(3)), instead of the zone database's");
    setCommand.setAction(
        [&name, &rule](Session& session) { setZone(session, name.one(), rule.one()); });
}

}  // namespace

void addTime(CommandTree& tree) {
    Command& noun =
        tree.addNoun("time", "Clock and time zone of the board",
                     {"time show", "time set 31/12/2024 23:59:30", "time zone set Europe/Vienna"});
    noun.addShow("show", "Show the local time, the time zone and how the clock is kept", show);

    Command& setCommand =
        noun.addCommand("set", "Set the clock, to a local time",
                        {"time set 31/12/2024 23:59:30", "time set 2024-12-31 23:59"});
    const Argument& moment =
        setCommand.addArguments("DATE TIME", "Date, day first or in ISO's order, and time of day");
    setCommand.setAction([&moment](Session& session) { set(session, moment.given()); });
    addTimeZone(noun);
}

}  // namespace mngctl
