#include "mngctl/commands/changes.h"
#include "mngctl/commands/networks.h"
#include "mngctl/commands/snmp.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

constexpr std::size_t longestCommunity = 31;
constexpr std::size_t mostManagers = 10;

void show(Session& session) {
    const Json traps = readSnmpTraps(session);
    session.print(traps, describeSnmpTraps(traps));
}

bool isThere(const Json& traps, unsigned address, const std::string& community) {
    const std::string text = formatIpv4(address);
    return std::ranges::any_of(traps["managers"], [&](const Json& each) {
        return each["address"] == text && each["community"] == community;
    });
}

std::string explainRefusedAdding(Session& session, unsigned address, const std::string& community,
                                 bool wasThere) {
    const Json traps = readSnmpTraps(session);
    if (wasThere) {
        return "there is a manager of that address with that community";
    }
    const bool isStored = isThere(traps, address, community);
    if (!isStored && traps["managers"].size() >= mostManagers) {
        return fmt::format("the board keeps {} managers, which it has", mostManagers);
    }
    return otherCause(isStored);
}

std::string explainRefusedRemoval(Session& session, unsigned address,
                                  const std::string& community) {
    return isThere(readSnmpTraps(session), address, community)
               ? otherCause(false)
               : "there is no manager of that address with that community now";
}

void addOrRemove(Session& session, unsigned address, std::string community, bool add) {
    checkCommunity(community, longestCommunity);
    const bool wasThere = isThere(readSnmpTraps(session), address, community);
    const Change change{add ? "add the manager" : "remove the manager",
                        request(session, rpc_network_snmptrap_add_1,
                                {community.data(), address, add ? TRUE : FALSE})};
    carryOutOrExplain(change, [&] {
        return add ? explainRefusedAdding(session, address, community, wasThere)
                   : explainRefusedRemoval(session, address, community);
    });
    readBack(session, show);
}

void move(Session& session, unsigned from, unsigned to, std::string community) {
    checkCommunity(community, longestCommunity);
    const Change change{"move the manager", request(session, rpc_network_snmptrap_change_1,
                                                    {community.data(), from, to})};
    carryOutOrExplain(change, [&] { return explainRefusedRemoval(session, from, community); });
    readBack(session, show);
}

void setPort(Session& session, const std::string& text) {
    const unsigned port = parseUpTo(65535, "expected a port", text);
    const Change change{"set the trap port", request(session, rpc_network_snmptrap_port_1, port)};
    carryOutOrExplain(change, [] { return otherCause(false); });
    readBack(session, show);
}

const char* nameOf(TrapOutcome::Kind kind) {
    switch (kind) {
        case TrapOutcome::Sent:
            return "sent";
        case TrapOutcome::Acknowledged:
            return "acknowledged";
        case TrapOutcome::NoAnswer:
            return "no answer";
        default:
            return "failed";
    }
}

std::string lineOf(const TrapTarget& target, const TrapOutcome& outcome) {
    std::string result = nameOf(outcome.kind);
    if (outcome.kind == TrapOutcome::Sent) {
        result += "; nobody acknowledges a trap: only the manager can tell that it has arrived";
    }
    if (!outcome.detail.empty()) {
        result += ": " + printable(outcome.detail);
    }
    return fmt::format("{}:{}: {}\n", target.address, target.port, result);
}

void test(Session& session, bool inform) {
    const Json traps = readSnmpTraps(session);
    if (traps["managers"].empty()) {
        throw Refused("there is no trap manager; 'mngctl snmp trap add' adds one");
    }
    Json json = Json::array();
    std::string text;
    std::size_t failures = 0;
    for (const Json& manager : traps["managers"]) {
        const TrapTarget target{manager["address"], traps["port"].get<int>(), manager["community"]};
        const TrapOutcome outcome = sendTestTrap(target, inform);
        json.push_back({{"address", target.address},
                        {"port", target.port},
                        {"outcome", nameOf(outcome.kind)},
                        {"detail", outcome.detail}});
        text += lineOf(target, outcome);
        if (outcome.kind != TrapOutcome::Sent && outcome.kind != TrapOutcome::Acknowledged) {
            ++failures;
        }
    }
    session.print(json, text);
    if (failures != 0) {
        throw NoAnswer(fmt::format("{} of {} managers: no notification has been delivered",
                                   failures, traps["managers"].size()));
    }
}

struct ManagerArguments {
    const Argument& address;
    const Argument& community;
};

ManagerArguments addManagerArguments(Command& command) {
    const Argument& address = command.addArgument("ADDRESS", "IPv4 address of the manager");
    const Argument& community =
        command.addArgument("COMMUNITY", "1 to 31 visible ASCII characters");
    return {address, community};
}

void addManagerCommand(Command& noun, const std::string& verb, const std::string& description,
                       bool add) {
    Command& command =
        noun.addCommand(verb, description, {"snmp trap " + verb + " 192.0.2.1 traps"});
    const ManagerArguments given = addManagerArguments(command);
    command.setAction([given, add](Session& session) {
        addOrRemove(session, parseHostAddress(given.address.one()), given.community.one(), add);
    });
}

void addTest(Command& noun) {
    Command& command = noun.addCommand(
        "test", "Send a test notification to every manager, from the machine mngctl runs on",
        {"snmp trap test", "snmp trap test --inform"});
    const auto inform = std::make_shared<bool>(false);
    command.addFlag("--inform", *inform,
                    "Send an inform request, which managers that know it acknowledge");
    command.setAction([inform](Session& session) { test(session, *inform); });
}

}  // namespace

Json readSnmpTraps(Session& session) {
    const auto config = session.ask(rpc_network_get_snmptrap_1);
    Json managers = Json::array();
    for (const rpcSnmpManager& each : config.managers) {
        if (each.ipAddress != 0) {
            managers.push_back(
                {{"address", formatIpv4(each.ipAddress)}, {"community", textOf(each.community)}});
        }
    }
    return Json{{"port", config.port}, {"managers", std::move(managers)}};
}

std::string describeSnmpTraps(const Json& traps) {
    const Json& managers = traps["managers"];
    return fmt::format("trap port: {}\ntrap managers:{}\n", traps["port"].get<int>(),
                       managers.empty() ? " none" : "") +
           columns(managers, "address", "community");
}

void addSnmpTrap(Command& snmp) {
    Command& noun =
        snmp.addNoun("trap", "Managers that the agent sends traps to (SNMPv2c)",
                     {"snmp trap list", "snmp trap add 192.0.2.1 traps", "snmp trap test"});
    noun.addShow("list", "Show the managers and their port", show);
    addManagerCommand(noun, "add", "Add a manager; the board keeps ten", true);
    addManagerCommand(noun, "remove", "Remove a manager", false);

    Command& moveCommand = noun.addCommand("move", "Give a manager another address",
                                           {"snmp trap move 192.0.2.1 traps 192.0.2.2"});
    const ManagerArguments given = addManagerArguments(moveCommand);
    const Argument& to = moveCommand.addArgument("NEW", "Its new address");
    moveCommand.setAction([given, &to](Session& session) {
        move(session, parseHostAddress(given.address.one()), parseHostAddress(to.one()),
             given.community.one());
    });

    Command& portCommand =
        noun.addCommand("port", "Set the UDP port of all managers", {"snmp trap port 162"});
    const Argument& port = portCommand.addArgument("PORT", "1 to 65535");
    portCommand.setAction([&port](Session& session) { setPort(session, port.one()); });
    addTest(noun);
}

}  // namespace mngctl
