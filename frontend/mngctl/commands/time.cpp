#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/ntpState.h"
#include "mngctl/commands/timeZone.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"
#include "mngctl/zone/civilTime.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

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
            fmt::format("local time: {}\ntime zone: {} ({})\n", time,
                        zone.name.empty() ? "none" : printable(zone.name), rule)};
}

void showClock(Session& session) {
    const Shown clock = clockOf(session);
    session.print(clock.json, clock.lines);
}

/// How well the clock is kept belongs to what it says.
void show(Session& session) {
    Shown shown = clockOf(session);
    const Json ntp = readNtp(session, readNtpConfig(session));
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
    try {
        carryOut(std::span(&change, 1));
    } catch (const Refused& refusal) {
        throw Refused(
            fmt::format("{}; the business-logic process needs the right to set the machine's clock "
                        "(CAP_SYS_TIME), which nobody has in a box or a container",
                        refusal.what()));
    }
    readBack(session, [&] { showClock(session); });
}

}  // namespace

void addTime(CommandTree& tree) {
    Command& noun =
        tree.addNoun("time", "Clock and time zone of the board",
                     {"time show", "time set 31/12/2024 23:59:30", "time zone set Europe/Vienna"});
    noun.addCommand("show", "Show the local time, the time zone and how the clock is kept",
                    {"time show", "time show --json"}, show);

    Command& setCommand =
        noun.addCommand("set", "Set the clock, to a local time",
                        {"time set 31/12/2024 23:59:30", "time set 2024-12-31 23:59"});
    const Argument& moment =
        setCommand.addArguments("DATE TIME", "Date, day first or in ISO's order, and time of day");
    setCommand.setAction([&moment](Session& session) { set(session, moment.given()); });
    addTimeZone(noun);
}

}  // namespace mngctl
