#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/vlanId.h"
#include "mngctl/commands/vlanState.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

rpcVlanMode parseMode(const std::string& text) {
    if (text == "tagged") {
        return rpcVlanTagged;
    }
    if (text == "native") {
        return rpcVlanNative;
    }
    throw UsageError(fmt::format("expected tagged or native, not '{}'", printable(text)));
}

void show(Session& session) {
    Json json = readVlanSettings(session);
    const Json database = readVlanDatabase(session);
    json.update(database);
    session.print(json, managementVlanLine(json) + defaultVlanLine(json) + databaseLines(database));
}

void showManagement(Session& session) {
    const Json settings = readVlanSettings(session);
    session.print(Json{{"managementVlan", settings["managementVlan"]}},
                  managementVlanLine(settings));
}

void showDefault(Session& session) {
    const Json settings = readVlanSettings(session);
    session.print(Json{{"defaultVlan", settings["defaultVlan"]}}, defaultVlanLine(settings));
}

void set(Session& session, unsigned vlan) {
    const Change change{"set the management VLAN", request(session, rpc_network_set_vlan_1, vlan)};
    carryOutOrExplain(change, [&] { return explainRefusedMove(session, vlan); });
    readBack(session, [&] { showManagement(session); });
}

void setDefault(Session& session, unsigned vlan, rpcVlanMode mode) {
    const Change change{"set the default VLAN",
                        request(session, rpc_network_set_def_vlan_mode_1, {vlan, mode})};
    carryOutOrExplain(change, [&] { return explainRefusedDefault(session, vlan); });
    readBack(session, [&] { showDefault(session); });
}

void addDefault(Command& parent) {
    Command& noun = parent.addNoun("default", "The default VLAN of the shelf",
                                   {"vlan default show", "vlan default set 10 native"});

    noun.addCommand("show", "Show the default VLAN and how the uplink carries it",
                    {"vlan default show", "vlan default show --json"}, showDefault);

    Command& setCommand =
        noun.addCommand("set", "Make a VLAN of the database the default one; needs profile mode",
                        {"vlan default set 10 tagged", "vlan default set 10 native"});
    const Argument& id = setCommand.addArgument("ID", "VLAN id, 1 to 4094 (IEEE 802.1Q)");
    const Argument& mode = setCommand.addArgument(
        "MODE", "tagged, or native: untagged on the uplink, with no other VLAN so",
        {"tagged", "native"});
    setCommand.setAction([&](Session& session) {
        const unsigned vlan = parseVlanId(id.one());
        setDefault(session, vlan, parseMode(mode.one()));
    });
}

}  // namespace

void addVlan(CommandTree& tree) {
    Command& noun = tree.addNoun("vlan", "VLAN of the management port, default VLAN, VLAN database",
                                 {"vlan show", "vlan set 10", "vlan default set 10 native"});

    noun.addCommand("show", "Show the management VLAN, the default VLAN and the VLAN database",
                    {"vlan show", "vlan show --json"}, show);

    Command& setCommand =
        noun.addCommand("set", "Move the management port into a VLAN", {"vlan set 10"});
    const Argument& id = setCommand.addArgument("ID", "VLAN id, 1 to 4094 (IEEE 802.1Q)");
    setCommand.setAction([&id](Session& session) { set(session, parseVlanId(id.one())); });

    addDefault(noun);
}

}  // namespace mngctl
