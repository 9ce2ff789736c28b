#include "mngctl/commands/commands.h"
#include "mngctl/commands/snmpSettings.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

constexpr std::size_t longestText = 31;

struct SystemText {
    const char* name;
    rpcSnmpSystemSelector selector;
    const char* description;
    const char* example;
};

constexpr SystemText texts[] = {
    {"contact", rpcSnmpSystemContact, "Set who is responsible for the node (sysContact)",
     "snmp contact 'NOC, +43 1 555 0100'"},
    {"location", rpcSnmpSystemLocation, "Set where the node stands (sysLocation)",
     "snmp location 'Rack 7, shelf 2'"},
    {"name", rpcSnmpSystemName, "Set the node's administrative name (sysName)",
     "snmp name msan-vie-07"},
};

void show(Session& session) {
    Json json = readSnmpSystem(session);
    json["communities"] = readSnmpCommunities(session);
    json["traps"] = readSnmpTraps(session);
    session.print(json, describeSnmpSystem(json) + describeSnmpCommunities(json["communities"]) +
                            describeSnmpTraps(json["traps"]));
}

void checkText(const SystemText& which, const std::string& text) {
    if (text.size() > longestText) {
        throw UsageError(fmt::format("the {} has at most {} bytes, this one has {}", which.name,
                                     longestText, text.size()));
    }
    const auto isControl = [](char c) {
        return (static_cast<unsigned char>(c) < ' ') || c == '\x7f';
    };
    if (std::ranges::any_of(text, isControl)) {
        throw UsageError(fmt::format("the {} has a control character", which.name));
    }
}

std::string explainRefusal(Session& session, const SystemText& which, const std::string& text) {
    const Json now = readSnmpSystem(session)[which.name];
    if (now == validUtf8(text)) {
        return "it is stored, but not in force; the board's log tells the cause";
    }
    return fmt::format("the {} is '{}' still", which.name,
                       printable(now.get_ref<const std::string&>()));
}

void setText(Session& session, const SystemText& which, std::string text) {
    checkText(which, text);
    const Change change{
        fmt::format("set the {}", which.name),
        request(session, rpc_network_snmpsystem_change_1, {text.data(), which.selector})};
    carryOutOrExplain(change, [&] { return explainRefusal(session, which, text); });
    readBack(session, [&] {
        const Json system = readSnmpSystem(session);
        session.print(system, describeSnmpSystem(system));
    });
}

}  // namespace

void addSnmp(CommandTree& tree) {
    Command& noun = tree.addNoun("snmp", "The SNMP agent: system texts, communities, trap managers",
                                 {"snmp show", "snmp name msan-vie-07",
                                  "snmp community add public ro", "snmp trap add 192.0.2.1 traps"});
    noun.addCommand("show", "Show all settings of the agent", {"snmp show", "snmp show --json"},
                    show);
    for (const SystemText& which : texts) {
        Command& command = noun.addCommand(
            which.name, which.description,
            {which.example, fmt::format("snmp {} ''      (removes it)", which.name)});
        const Argument& text =
            command.addArgument("TEXT", "At most 31 bytes, without control characters");
        command.setAction(
            [&which, &text](Session& session) { setText(session, which, text.one()); });
    }
    addSnmpCommunity(noun);
    addSnmpTrap(noun);
}

}  // namespace mngctl
