#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/managementInterface.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

void show(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(describe(state), lines(state, ""));
}

void showGateway(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(Json{{"gateway", orNull(state.gateway)}},
                  fmt::format("gateway: {}\n", orNone(state.gateway)));
}

void showClient(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(Json{{"dhcp", state.dhcp}}, fmt::format("DHCP client: {}\n", onOff(state.dhcp)));
}

/// What a refused change has left behind, in a few words.
std::string describeInForce(const Ipv6State& state) {
    std::string addresses;
    for (const std::string& address : state.addresses) {
        addresses += (addresses.empty() ? "" : ", ") + printable(address);
    }
    return fmt::format(
        "{}, {}, DHCPv6 {}", addresses.empty() ? "no IPv6 address" : addresses,
        state.gateway.empty() ? "no gateway" : "the gateway " + printable(state.gateway),
        onOff(state.dhcp));
}

/// Whether answers to the caller go through a gateway.
bool isReachedThroughGateway(const Ipv6State& state, const WayIn6& way) {
    return !state.gateway.empty() &&
           std::ranges::none_of(state.addresses, [&](const std::string& text) {
               const Ipv6Network network = readIpv6Network(text);
               return network.length != 0 && isInIpv6Network(network, way.client);
           });
}

void askBeforeChangingGateway(Session& session, const std::string& what) {
    const auto way = wayIn6();
    if (!way || session.settings.yes) {
        return;
    }
    const Ipv6State before = readIpv6State(session);
    if (isReachedThroughGateway(before, *way)) {
        askBeforeCuttingOff(
            session, way->client,
            fmt::format("it is reached through the gateway {}, which {}", before.gateway, what));
    }
}

/// Asks before a change that can take the address away that the caller came in over. `isAtRisk`
/// tells for which of the board's addresses that is so.
void askBeforeLosing(Session& session, const std::string& reason,
                     const std::function<bool(const Ipv6Network&)>& isAtRisk) {
    const auto way = wayIn6();
    if (!way || session.settings.yes) {
        return;
    }
    for (const std::string& text : readIpv6State(session).addresses) {
        const Ipv6Network network = readIpv6Network(text);
        if (network.length != 0 && network.address == way->server && isAtRisk(network)) {
            return askBeforeCuttingOff(session, way->client,
                                       fmt::format("it came in over {}, {}", text, reason));
        }
    }
}

void changeAndShow(Session& session, const Change& change) {
    carryOut(change, [&] { return describeInForce(readIpv6State(session)); });
    readBack(session, show);
}

/// Leases name no network.
bool isLeased(const Ipv6Network& network) { return network.length == 128; }

void clear(Session& session) {
    askBeforeLosing(session, "which can be the one that is to be removed", isGlobal);
    changeAndShow(session, {"remove the IPv6 address that was set by hand",
                            request(session, rpc_network_remove_ipv6addr_1)});
}

/// The board answers that all is well whatever has come of it: what it says afterwards counts.
void switchClient(Session& session, bool on) {
    if (!on) {
        askBeforeLosing(session, "which the board loses when DHCPv6 is switched off", isLeased);
    }
    const std::string what = "switch DHCPv6 " + onOff(on);
    const Change change{what, request(session, rpc_network_set_ipv6proto_1, on ? TRUE : FALSE)};
    carryOut(std::span(&change, 1));
    if (readIpv6State(session).dhcp != on) {
        throw Refused(fmt::format("the board did not {}; its log tells the cause", what));
    }
    readBack(session, show);
}

void addGatewayCommands(Command& parent) {
    Command& noun =
        parent.addNoun("gateway", "The IPv6 default gateway",
                       {"ipv6 gateway show", "ipv6 gateway set fe80::1", "ipv6 gateway clear"});

    noun.addShow("show", "Show the gateway in force", showGateway);

    Command& setCommand =
        noun.addCommand("set", "Set the gateway, which goes before those that routers advertise",
                        {"ipv6 gateway set fe80::1", "ipv6 gateway set 2001:db8::1"});
    const Argument& address = setCommand.addArgument("ADDRESS", "IPv6 address of a neighbour");
    setCommand.addYesFlag();
    setCommand.setAction(
        [&address](Session& session) { setIpv6Gateway(session, parseIpv6Host(address.one())); });

    noun.addCommand("clear", "Remove the gateway that was set by hand",
                    {"ipv6 gateway clear", "ipv6 gateway clear --yes"}, clearIpv6Gateway)
        .addYesFlag();
}

void addClientCommands(Command& parent) {
    Command& noun = parent.addNoun("dhcp", "The DHCPv6 client",
                                   {"ipv6 dhcp show", "ipv6 dhcp on", "ipv6 dhcp off"});
    noun.addShow("show", "Show whether the client is on", showClient);
    for (const bool on : {true, false}) {
        const std::string verb = onOff(on);
        noun.addCommand(verb,
                        on ? "Switch the client on, beside the address set by hand"
                           : "Switch the client off; what it was granted goes with it",
                        {"ipv6 dhcp " + verb, "ipv6 dhcp " + verb + " --yes"},
                        [on](Session& session) { switchClient(session, on); })
            .addYesFlag();
    }
}

}  // namespace

void setIpv6Address(Session& session, const Ipv6Network& wanted) {
    const std::string text = formatIpv6Network(wanted);
    askBeforeLosing(session, fmt::format("which {} can take the place of", text),
                    [&](const Ipv6Network& network) {
                        return isGlobal(network) && formatIpv6Network(network) != text;
                    });
    std::string address = wanted.address;
    changeAndShow(session, {"set the address " + text, request(session, rpc_network_set_ipv6addr_1,
                                                               {address.data(), wanted.length})});
}

void setIpv6Gateway(Session& session, const std::string& gateway) {
    askBeforeChangingGateway(session, gateway + " is to replace");
    std::string text = gateway;
    changeAndShow(session, {"set the gateway " + gateway,
                            request(session, rpc_network_set_ipv6gw_1, text.data())});
}

void clearIpv6Gateway(Session& session) {
    askBeforeChangingGateway(session, "is to be removed");
    changeAndShow(session, {"remove the IPv6 gateway that was set by hand",
                            request(session, rpc_network_remove_ipv6gw_1)});
}

void addIpv6(CommandTree& tree) {
    Command& noun = tree.addNoun(
        "ipv6", "IPv6 addresses, gateway and DHCPv6 client of the management interface",
        {"ipv6 show", "ipv6 set 2001:db8::7/64", "ipv6 gateway set fe80::1", "ipv6 dhcp on"});

    noun.addShow("show", "Show all addresses, the gateway in force and the client", show);

    Command& setCommand =
        noun.addCommand("set", "Set the static address, in place of the one before",
                        {"ipv6 set 2001:db8::7/64", "ipv6 set 2001:db8::7 64",
                         "ipv6 set --yes 2001:db8::8/64     (without asking whoever came in over "
                         "the old one)"});
    const Argument& address =
        setCommand.addArgument("ADDRESS", "IPv6 address, with /LENGTH or before LENGTH");
    const Argument& length = setCommand.addOptionalArgument(
        "LENGTH", "Prefix length from 1 to 128, if there is no /LENGTH");
    setCommand.addYesFlag();
    setCommand.setAction([&address, &length](Session& session) {
        setIpv6Address(session, parseIpv6InterfaceAddress(address.one(), length.one()));
    });

    noun.addCommand("clear", "Remove the static address", {"ipv6 clear", "ipv6 clear --yes"}, clear)
        .addYesFlag();

    addGatewayCommands(noun);
    addClientCommands(noun);
}

}  // namespace mngctl
