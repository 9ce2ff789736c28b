#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/ipv6State.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

void show(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(describe(state), lines(state, ""));
}

void showGateway(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(
        Json{{"gateway", describe(state)["gateway"]}},
        fmt::format("gateway: {}\n", state.gateway.empty() ? "none" : printable(state.gateway)));
}

void showClient(Session& session) {
    const Ipv6State state = readIpv6State(session);
    session.print(Json{{"dhcp", state.dhcp}},
                  fmt::format("DHCP client: {}\n", state.dhcp ? "on" : "off"));
}

/// Leases name no network.
bool isLeased(const Ipv6Network& network) { return network.length == 128; }

void clear(Session& session, bool yes) {
    askBeforeLosing(session, yes, "which can be the one that is to be removed", isGlobal);
    const Change change{"remove the IPv6 address that was set by hand",
                        request(session, rpc_network_remove_ipv6addr_1)};
    carryOut(change, [&] { return describeInForce(readIpv6State(session)); });
    readBack(session, [&] { show(session); });
}

/// The board answers that all is well whatever has come of it: what it says afterwards counts.
void switchClient(Session& session, bool yes, bool on) {
    if (!on) {
        askBeforeLosing(session, yes, "which the board loses when DHCPv6 is switched off",
                        isLeased);
    }
    const std::string what = fmt::format("switch DHCPv6 {}", on ? "on" : "off");
    const Change change{what, request(session, rpc_network_set_ipv6proto_1, on ? TRUE : FALSE)};
    carryOut(std::span(&change, 1));
    if (readIpv6State(session).dhcp != on) {
        throw Refused(fmt::format("the board did not {}; its log tells the cause", what));
    }
    readBack(session, [&] { show(session); });
}

void addGatewayCommands(Command& parent) {
    Command& noun =
        parent.addNoun("gateway", "The IPv6 default gateway",
                       {"ipv6 gateway show", "ipv6 gateway set fe80::1", "ipv6 gateway clear"});

    noun.addCommand("show", "Show the gateway in force",
                    {"ipv6 gateway show", "ipv6 gateway show --json"}, showGateway);

    Command& setCommand =
        noun.addCommand("set", "Set the gateway, which goes before those that routers advertise",
                        {"ipv6 gateway set fe80::1", "ipv6 gateway set 2001:db8::1"});
    const Argument& address = setCommand.addArgument("ADDRESS", "IPv6 address of a neighbour");
    const auto setYes = addYesFlag(setCommand);
    setCommand.setAction([&address, setYes](Session& session) {
        setIpv6Gateway(session, *setYes, parseIpv6Host(address.one()));
    });

    Command& clearCommand = noun.addCommand("clear", "Remove the gateway that was set by hand",
                                            {"ipv6 gateway clear", "ipv6 gateway clear --yes"});
    const auto clearYes = addYesFlag(clearCommand);
    clearCommand.setAction([clearYes](Session& session) { clearIpv6Gateway(session, *clearYes); });
}

void addClientCommands(Command& parent) {
    Command& noun = parent.addNoun("dhcp", "The DHCPv6 client",
                                   {"ipv6 dhcp show", "ipv6 dhcp on", "ipv6 dhcp off"});
    noun.addCommand("show", "Show whether the client is on",
                    {"ipv6 dhcp show", "ipv6 dhcp show --json"}, showClient);
    for (const bool on : {true, false}) {
        const std::string verb = on ? "on" : "off";
        Command& command =
            noun.addCommand(verb,
                            on ? "Switch the client on, beside the address set by hand"
                               : "Switch the client off; what it was granted goes with it",
                            {"ipv6 dhcp " + verb, "ipv6 dhcp " + verb + " --yes"});
        const auto yes = addYesFlag(command);
        command.setAction([yes, on](Session& session) { switchClient(session, *yes, on); });
    }
}

}  // namespace

void addIpv6(CommandTree& tree) {
    Command& noun = tree.addNoun(
        "ipv6", "IPv6 addresses, gateway and DHCPv6 client of the management interface",
        {"ipv6 show", "ipv6 set 2001:db8::7/64", "ipv6 gateway set fe80::1", "ipv6 dhcp on"});

    noun.addCommand("show", "Show all addresses, the gateway in force and the client",
                    {"ipv6 show", "ipv6 show --json"}, show);

    Command& setCommand =
        noun.addCommand("set", "Set the static address, in place of the one before",
                        {"ipv6 set 2001:db8::7/64", "ipv6 set 2001:db8::7 64",
                         "ipv6 set --yes 2001:db8::8/64     (without asking whoever came in over "
                         "the old one)"});
    const Argument& address =
        setCommand.addArgument("ADDRESS", "IPv6 address, with /LENGTH or before LENGTH");
    const Argument& length = setCommand.addOptionalArgument(
        "LENGTH", "Prefix length from 1 to 128, if there is no /LENGTH");
    const auto setYes = addYesFlag(setCommand);
    setCommand.setAction([&address, &length, setYes](Session& session) {
        setIpv6Address(session, *setYes, parseIpv6InterfaceAddress(address.one(), length.one()));
    });

    Command& clearCommand =
        noun.addCommand("clear", "Remove the static address", {"ipv6 clear", "ipv6 clear --yes"});
    const auto clearYes = addYesFlag(clearCommand);
    clearCommand.setAction([clearYes](Session& session) { clear(session, *clearYes); });

    addGatewayCommands(noun);
    addClientCommands(noun);
}

}  // namespace mngctl
