#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

/// A service with a switch.
struct Service {
    std::string noun;
    std::string name;
    Stub<bool_t, rpcNetworkResult> enable;
    bool (*isOn)(Session& session);
};

/// The board answers 0 while FTP is on and 1 while it is off.
bool isFtpOn(Session& session) {
    constexpr int on = 0;
    constexpr int off = 1;
    const int state = static_cast<int>(session.ask(rpc_network_is_ftp_enabled_1));
    if (state != on && state != off) {
        throw Refused(
            fmt::format("the board cannot tell whether FTP is on: {}", describeOutcome(state)));
    }
    return state == on;
}

void show(Session& session, const Service& service) {
    const bool on = service.isOn(session);
    session.print(Json{{"enabled", on}}, fmt::format("{}: {}\n", service.name, onOff(on)));
}

rpcPtyConfig readLimits(Session& session) { return session.ask(rpc_network_pty_get_max_sess_1); }

std::string limitText(unsigned limit) {
    return fmt::format("{} session{}", limit, limit == 1 ? "" : "s");
}

std::string idleText(unsigned minutes) {
    if (minutes == 0) {
        return "never";
    }
    return fmt::format("{} minute{}", minutes, minutes == 1 ? "" : "s");
}

/// A switch that the board stores but cannot follow comes back as a refusal.
void carryOutSwitch(Session& session, const Service& service, bool on) {
    const Change change{fmt::format("switch {} {}", service.name, onOff(on)),
                        request(session, service.enable, on ? TRUE : FALSE)};
    carryOutOrExplain(change, [&] {
        try {
            return fmt::format("stored now: {} {}; the board's log tells why it is not in force",
                               service.name, onOff(service.isOn(session)));
        } catch (const Failure& failure) {
            return fmt::format("what is stored now could not be read: {}", failure.what());
        }
    });
}

void change(Session& session, const Service& service, bool on) {
    carryOutSwitch(session, service, on);
    readBack(session, [&](Session&) { show(session, service); });
}

/// To switch telnet returns the limits to the board's own values.
void changeTelnet(Session& session, const Service& service, bool on) {
    if (session.settings.quiet) {
        return change(session, service, on);
    }
    const rpcPtyConfig before = readLimits(session);
    change(session, service, on);
    readBack(session, [&](Session&) {
        const rpcPtyConfig after = readLimits(session);
        if (after.maxSessions != before.maxSessions) {
            session.streams.err << fmt::format(
                "mngctl: switching telnet has set the limit from {} back to {}\n",
                limitText(before.maxSessions), limitText(after.maxSessions));
        }
        if (after.value != before.value) {
            session.streams.err << fmt::format(
                "mngctl: switching telnet has set the idle timeout from {} back to {}\n",
                idleText(before.value), idleText(after.value));
        }
    });
}

using Changer = void (*)(Session& session, const Service& service, bool on);

void addService(CommandTree& tree, const Service& service, const std::string& description,
                Changer changer) {
    const std::string& noun = service.noun;
    Command& parent = tree.addNoun(noun, description, {noun + " show", noun + " on"});
    parent.addShow("show", fmt::format("Show whether {} is on", service.name),
                   [service](Session& session) { show(session, service); });
    for (const bool on : {true, false}) {
        const std::string verb = onOff(on);
        parent.addCommand(verb,
                          fmt::format("Switch {} {}{}", service.name, verb,
                                      on ? "" : "; sessions that are there stay until they end"),
                          {noun + " " + verb}, [service, changer, on](Session& session) {
                              changer(session, service, on);
                          });
    }
}

void showLimits(Session& session) {
    const rpcPtyConfig limits = readLimits(session);
    session.print(Json{{"limit", limits.maxSessions},
                       {"idleMinutes", limits.value == 0 ? Json() : Json(limits.value)}},
                  fmt::format("limit: {}, telnet and SSH together\nidle timeout of telnet: {}\n",
                              limitText(limits.maxSessions), idleText(limits.value)));
}

/// 0 stands for the board's own limit, as in the procedure.
unsigned parseLimit(const std::string& text) {
    if (text == "default") {
        return 0;
    }
    const unsigned limit = parseUnsigned(text);
    if (limit == 0) {
        throw UsageError(
            "a limit of 0 would shut everybody out: 'mngctl telnet off' and 'mngctl "
            "ssh off' do that; 'default' stands for the board's own limit");
    }
    return limit;
}

void setLimit(Session& session, unsigned limit) {
    const std::string what =
        limit == 0 ? "set the limit to its own value" : "set the limit to " + limitText(limit);
    carryOut({what, request(session, rpc_network_pty_set_max_sess_1, limit)},
             [&] { return "at most " + limitText(readLimits(session).maxSessions); });
    readBack(session, showLimits);
}

}  // namespace

void addServices(CommandTree& tree) {
    addService(tree,
               {"telnet", "telnet", rpc_network_telnet_enable_1,
                [](Session& session) { return session.ask(rpc_network_get_telnet_1) != 0; }},
               "Telnet server of the management interface", changeTelnet);
    addService(tree,
               {"ssh", "SSH", rpc_network_ssh_enable_1,
                [](Session& session) { return session.ask(rpc_network_get_ssh_1) != 0; }},
               "SSH server of the management interface", change);
    addService(tree, {"ftp", "FTP", rpc_network_ftp_enable_1, isFtpOn},
               "FTP server of the management interface", change);

    Command& noun = tree.addNoun("sessions", "Limits on terminal sessions over telnet and SSH",
                                 {"sessions show", "sessions limit 8"});
    noun.addShow("show", "Show the limit and the idle timeout", showLimits);
    Command& limitCommand =
        noun.addCommand("limit",
                        "Set how many terminal sessions there may be at a time; those that are "
                        "there stay until they end",
                        {"sessions limit 8", "sessions limit default"});
    const Argument& limit =
        limitCommand.addArgument("N", "Number of sessions, or default", {"default"});
    limitCommand.setAction(
        [&limit](Session& session) { setLimit(session, parseLimit(limit.one())); });
}

}  // namespace mngctl
