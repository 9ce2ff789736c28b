#include "mngctl/commands/timeZone.h"

#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"
#include "mngctl/zone/civilTime.h"
#include "mngctl/zone/zoneDatabase.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace mngctl {

namespace {

constexpr std::size_t changesShown = 2;
constexpr std::size_t longestName = 199;
constexpr std::size_t longestShown = 99;

bool hasRule(const ZoneSettings& zone) {
    return !zone.observesDst() || (zone.start.isValid() && zone.end.isValid());
}

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

void show(Session& session) {
    const ZoneSettings zone = readZone(session);
    const Outlook future =
        hasRule(zone) ? outlook(zone, readTime(session), changesShown) : Outlook{};
    const int now = zone.offset + (future.isDst ? zone.dstOffset : 0);
    session.print(describe(zone, future),
                  fmt::format("time zone: {}\nrule: {}\nnow: {}{}\n{}",
                              zone.name.empty() ? "none" : printable(zone.name), ruleOrNone(zone),
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

rpcNetworkResult setZone(Session& session, int offset, std::string name) {
    rpc_network_set_sntp_timezone_1_argument argument{offset, name.data()};
    rpcNetworkResult result{};
    session.client.call(networkProgram, rpc_network_set_sntp_timezone_1, argument, result);
    return result;
}

/// The board keeps the parts of a zone one by one; the switch to daylight-saving time comes last.
std::vector<Change> changesTo(Session& session, const ZoneSettings& zone) {
    std::vector<Change> changes{
        {fmt::format("set the time zone {} with {}", zone.name, utcOffset(zone.offset)),
         [&session, zone] { return setZone(session, zone.offset, zone.name); }}};
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

void set(Session& session, const std::string& name, const std::string& rule) {
    checkName(name);
    ZoneSettings zone = parseRule(rule.empty() ? ruleOfZone(name) : rule);
    zone.name = name;
    if (name.size() > longestShown) {
        session.streams.err << fmt::format(
            "mngctl: the board keeps all {} characters of this name but shows the first {} only\n",
            name.size(), longestShown);
    }
    carryOut(changesTo(session, zone));
    readBack(session, [&] { show(session); });
}

}  // namespace

LocalTime readTime(Session& session) {
    rpcNetworkTimeResult answer{};
    session.client.call(networkProgram, rpc_network_get_time_info_1, answer);
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

ZoneSettings readZone(Session& session) {
    rpcNetworkSntpTimezone answer{};
    session.client.call(networkProgram, rpc_network_get_sntp_timezone_info_1, answer);
    return {std::string(answer.name, strnlen(answer.name, sizeof answer.name)),
            answer.offset,
            answer.dstOffset,
            {answer.dstSMonth, answer.dstSWeek, answer.dstSDayInWeek, answer.dstSTime},
            {answer.dstEMonth, answer.dstEWeek, answer.dstEDayInWeek, answer.dstETime}};
}

std::string ruleOrNone(const ZoneSettings& zone) {
    return hasRule(zone) ? formatRule(zone) : "none";
}

Json ruleOrNull(const ZoneSettings& zone) {
    return hasRule(zone) ? Json(formatRule(zone)) : Json();
}

void addTimeZone(Command& parent) {
    Command& noun = parent.addNoun("zone", "Time zone and daylight-saving time",
                                   {"time zone show", "time zone set Europe/Vienna"});
    noun.addCommand("show", "Show the zone, its rule and the next two changes it means",
                    {"time zone show", "time zone show --json"}, show);

    Command& setCommand = noun.addCommand(
        "set",
        "Set the zone, by a name of this machine's zone database or by a rule of the variable TZ",
        {"time zone set Europe/Vienna", "time zone set UTC",
         "time zone set office CET-1CEST,M3.5.0,M10.5.0/3"});
    const Argument& name = setCommand.addArgument("NAME", "Name of the zone");
    const Argument& rule = setCommand.addOptionalArgument(
        "RULE", "Its rule (tzset(3)), instead of the zone database's");
    setCommand.setAction(
        [&name, &rule](Session& session) { set(session, name.one(), rule.one()); });
}

}  // namespace mngctl
