#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/control.h"
#include "mngctl/commands/managementInterface.h"
#include "mngctl/commands/texts.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

void show(Session& session) {
    const rpcNetworkInfo info = readNetworkInfo(session);
    session.print(
        Json{{"enabled", info.dhcpEnabled != 0},
             {"vendorClass", info.vendorClassEnabled != 0},
             {"option82", info.option82Enabled != 0}},
        fmt::format("DHCP client: {}\nvendor class: {}\noption 82: {}\n", onOff(info.dhcpEnabled),
                    onOff(info.vendorClassEnabled), onOff(info.option82Enabled)));
}

Json sentText(bool_t on, const char* text) {
    return Json{{"text", validUtf8(text == nullptr ? "" : text)}, {"sent", on != FALSE}};
}

std::string sentLine(std::string_view what, const Json& sent) {
    return fmt::format("{}: {} ({})\n", what, orNone(sent["text"]),
                       sent["sent"].get<bool>() ? "sent" : "not sent");
}

/// The texts are those of the control program; the network program tells only whether they are
/// sent.
void showIdentification(Session& session) {
    Decoded<controlDhcp> answer(xdr_controlDhcp);
    session.client.call(controlProgram, bll_control_dhcp_1, *answer);
    if (answer->result != 0) {
        throw Refused(fmt::format("the board refused to tell what its DHCP client sends: {}",
                                  answer->reply == nullptr ? "" : printable(answer->reply)));
    }
    const Json json{{"vendorClass", sentText(answer->vendorClassOn, answer->vendorClass)},
                    {"circuitId", sentText(answer->option82On, answer->circuitId)}};
    session.print(json, sentLine("vendor class", json["vendorClass"]) +
                            sentLine("circuit id", json["circuitId"]));
}

std::string describeInForce(Session& session) {
    const rpcNetworkInfo info = readNetworkInfo(session);
    return fmt::format("DHCP {}, vendor class {}, option 82 {}", onOff(info.dhcpEnabled),
                       onOff(info.vendorClassEnabled), onOff(info.option82Enabled));
}

void carryOutAndShow(Session& session, const Change& change) {
    carryOut(change, [&] { return describeInForce(session); });
    readBack(session, show);
}

void switchClient(Session& session, bool on) {
    if (const auto way = wayIn(); way && !session.settings.yes) {
        const rpcNetworkInfo info = readNetworkInfo(session);
        if (way->server == info.ipAddress && on != (info.dhcpEnabled != 0)) {
            askBeforeCuttingOff(
                session, *way,
                fmt::format("it came in over {}, which the board can lose when DHCP is switched {}",
                            formatIpv4(way->server), onOff(on)));
        }
    }
    carryOutAndShow(session, {"switch DHCP " + onOff(on),
                              request(session, rpc_network_set_protocol_1, on ? TRUE : FALSE)});
}

void addClientCommand(Command& noun, bool on) {
    const std::string verb = onOff(on);
    noun.addCommand(verb, "Switch the DHCP client " + verb,
                    {"dhcp " + verb, "dhcp " + verb + " --yes"},
                    [on](Session& session) { switchClient(session, on); })
        .addYesFlag();
}

void addOptionCommand(Command& noun, const std::string& name, const std::string& description,
                      std::function<Change(Session&, bool_t)> change) {
    Command& command =
        noun.addCommand(name, description, {"dhcp " + name + " on", "dhcp " + name + " off"});
    const Argument& state = command.addArgument("STATE", "on or off", {"on", "off"});
    command.setAction([&state, make = std::move(change)](Session& session) {
        const bool on = parseFlag(state.one());
        carryOutAndShow(session, make(session, on ? TRUE : FALSE));
    });
}

// Both procedures can switch the client itself on as well; here it stays as it is.

Change vendorClass(Session& session, bool_t on) {
    return {"switch the vendor class " + onOff(on),
            request(session, rpc_network_set_vendor_1, {FALSE, on})};
}

Change option82(Session& session, bool_t on) {
    return {"switch option 82 " + onOff(on),
            request(session, rpc_network_set_option82_1, {FALSE, on})};
}

}  // namespace

void addDhcp(CommandTree& tree) {
    Command& noun =
        tree.addNoun("dhcp", "DHCP client of the management interface",
                     {"dhcp show", "dhcp on", "dhcp vendor-class on", "dhcp circuit-id"});

    noun.addShow("show", "Show whether the client and its options are on", show);
    noun.addShow(
        "circuit-id",
        "Show the texts of vendor class and option 82, by which the server knows the board",
        showIdentification);
    addClientCommand(noun, true);
    addClientCommand(noun, false);
    addOptionCommand(noun, "vendor-class",
                     "Have the client send its vendor class (option 60), or not", vendorClass);
    addOptionCommand(noun, "option82", "Have the client send shelf and board in option 82, or not",
                     option82);
}

}  // namespace mngctl
