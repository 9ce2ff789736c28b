#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/recordFields.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

namespace mngctl {

namespace {

/// With this feature the board creates a VLAN that is missing.
constexpr std::string_view creatingFeature = "12";

Json orNull(unsigned vlan) { return vlan == 0 ? Json() : Json(vlan); }

std::string idText(const Json& vlan) { return vlan.is_null() ? "none" : vlan.dump(); }

std::string defaultVlanText(const Json& settings) {
    const Json& vlan = settings["defaultVlan"];
    const Json& mode = vlan["mode"];
    return fmt::format("{} ({})", idText(vlan["id"]),
                       mode.is_string() ? mode.get<std::string>() : mode.dump());
}

Json portsOf(const int* ports, unsigned count) {
    Json list = Json::array();
    for (unsigned i = 0; i < count; ++i) {
        list.push_back(ports[i]);
    }
    return list;
}

std::string vlanLine(const Json& vlan) {
    std::string ports;
    for (const Json& port : vlan["ports"]) {
        const bool untagged = std::ranges::find(vlan["pvidPorts"], port) != vlan["pvidPorts"].end();
        ports += fmt::format("{}{}{}", ports.empty() ? "" : ", ", port.dump(),
                             untagged ? " (PVID)" : "");
    }
    return fmt::format("VLAN {}: {}\n", idText(vlan["id"]),
                       ports.empty() ? "no ports" : "ports " + ports);
}

struct Modes {
    bool profile = false;
    bool creating = false;
};

Modes readModes(Session& session) {
    Decoded<controlStatus> status(xdr_controlStatus);
    session.client.call(controlProgram, bll_get_status_1, *status);
    Modes modes;
    modes.profile = status->profileMode != FALSE;
    for (const controlFeature& feature :
         std::span(status->features.features_val, status->features.features_len)) {
        if (feature.name == creatingFeature) {
            modes.creating = feature.on != FALSE;
        }
    }
    return modes;
}

bool exists(const Json& database, unsigned vlan) {
    return std::ranges::any_of(database["database"],
                               [&](const Json& each) { return each["id"] == vlan; });
}

std::string missing(unsigned vlan) {
    return fmt::format("VLAN {} is not in the VLAN database", vlan);
}

/// Both parts with a semicolon between them; a part that cannot be read is left out.
std::string joined(const std::function<std::string()>& reason,
                   const std::function<std::string()>& state) {
    std::string text;
    for (const auto& part : {reason, state}) {
        try {
            const std::string known = part();
            if (!text.empty()) {
                text += "; ";
            }
            text += known;
        } catch (const Failure&) {
            // The refusal is what the user has to hear of.
        }
    }
    return text;
}

/// The VLAN of the management port and the default VLAN, as the network program tells them:
/// {"managementVlan": ID or null, "defaultVlan": {"id": ID or null, "mode": "tagged" or "native"}}.
Json readVlanSettings(Session& session) {
    auto info = session.ask(rpc_network_get_network_info_1);
    return Json{
        {"managementVlan", orNull(info.mngVlanId)},
        {"defaultVlan", Json{{"id", orNull(info.defVid)}, {"mode", toJson(info)["defVlanMode"]}}}};
}

/// The switch as the control program tells it: {"storedManagementVlan": ID or null, "database":
/// [{"id": ID, "ports": [...], "pvidPorts": [...]}]}. Throws Refused, with the board's reason, when
/// it cannot tell.
Json readVlanDatabase(Session& session) {
    Decoded<controlVlans> vlans(xdr_controlVlans);
    session.client.call(controlProgram, bll_control_vlans_1, *vlans);
    if (vlans->result != 0) {
        throw Refused(fmt::format("the board refused to tell its VLANs: {}",
                                  vlans->reply == nullptr ? "" : printable(vlans->reply)));
    }
    Json database = Json::array();
    for (const controlVlan& vlan : std::span(vlans->vlans.vlans_val, vlans->vlans.vlans_len)) {
        database.push_back(Json{
            {"id", vlan.id},
            {"ports", portsOf(vlan.members.members_val, vlan.members.members_len)},
            {"pvidPorts", portsOf(vlan.pvidPorts.pvidPorts_val, vlan.pvidPorts.pvidPorts_len)}});
    }
    return Json{{"storedManagementVlan", orNull(vlans->managementVlan)},
                {"database", std::move(database)}};
}

std::string managementVlanLine(const Json& settings) {
    return fmt::format("management VLAN: {}\n", idText(settings["managementVlan"]));
}

std::string defaultVlanLine(const Json& settings) {
    return fmt::format("default VLAN: {}\n", defaultVlanText(settings));
}

std::string databaseLines(const Json& database) {
    std::string lines =
        fmt::format("stored for profile mode: {}\n", idText(database["storedManagementVlan"]));
    for (const Json& vlan : database["database"]) {
        lines += vlanLine(vlan);
    }
    return lines;
}

// Why the board may have refused to move the management port, and to make a VLAN the default one,
// as far as its state tells, and what holds now. Empty when nothing can be read.

std::string explainRefusedMove(Session& session, unsigned vlan) {
    const auto reason = [&]() -> std::string {
        const Modes modes = readModes(session);
        if (!exists(readVlanDatabase(session), vlan)) {
            return missing(vlan) + (modes.creating
                                        ? ", and could not be created"
                                        : ", and the board creates none while feature 12 is off");
        }
        if (modes.profile) {
            return "in profile mode, a VLAN that is native on the uplink carries no management "
                   "traffic unless it is the default VLAN; the board's log tells the cause";
        }
        return "the board's log tells the cause";
    };
    const auto state = [&]() -> std::string {
        const Json settings = readVlanSettings(session);
        if (settings["managementVlan"].is_null()) {
            return "the management port is in no management VLAN now";
        }
        return "the management VLAN is now " + idText(settings["managementVlan"]);
    };
    return joined(reason, state);
}

std::string explainRefusedDefault(Session& session, unsigned vlan) {
    const auto reason = [&]() -> std::string {
        if (!readModes(session).profile) {
            return "the default VLAN can be changed in profile mode only, which 'mngctl board "
                   "profile on' switches on";
        }
        if (!exists(readVlanDatabase(session), vlan)) {
            return missing(vlan);
        }
        return "the VLANs of the uplink may be in conflict; the board's log tells the cause";
    };
    const auto state = [&] {
        return "the default VLAN is now " + defaultVlanText(readVlanSettings(session));
    };
    return joined(reason, state);
}

// The commands.

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
    readBack(session, showManagement);
}

void setDefault(Session& session, unsigned vlan, rpcVlanMode mode) {
    const Change change{"set the default VLAN",
                        request(session, rpc_network_set_def_vlan_mode_1, {vlan, mode})};
    carryOutOrExplain(change, [&] { return explainRefusedDefault(session, vlan); });
    readBack(session, showDefault);
}

void addDefault(Command& parent) {
    Command& noun = parent.addNoun("default", "The default VLAN of the shelf",
                                   {"vlan default show", "vlan default set 10 native"});

    noun.addShow("show", "Show the default VLAN and how the uplink carries it", showDefault);

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

unsigned parseVlanId(const std::string& text) {
    return parseUpTo(4094, "expected a VLAN id", text);
}

void addVlan(CommandTree& tree) {
    Command& noun = tree.addNoun("vlan", "VLAN of the management port, default VLAN, VLAN database",
                                 {"vlan show", "vlan set 10", "vlan default set 10 native"});

    noun.addShow("show", "Show the management VLAN, the default VLAN and the VLAN database", show);

    Command& setCommand =
        noun.addCommand("set", "Move the management port into a VLAN", {"vlan set 10"});
    const Argument& id = setCommand.addArgument("ID", "VLAN id, 1 to 4094 (IEEE 802.1Q)");
    setCommand.setAction([&id](Session& session) { set(session, parseVlanId(id.one())); });

    addDefault(noun);
}

}  // namespace mngctl
