#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/managementInterface.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

void showBoth(Session& session) {
    const unsigned gateway = readGateway(session);
    const std::string ipv6 = readIpv6State(session).gateway;
    session.print(
        Json{{"gateway", addressOrNull(gateway)}, {"ipv6Gateway", orNull(ipv6)}},
        fmt::format("gateway: {}\nIPv6 gateway: {}\n", addressOrNone(gateway), orNone(ipv6)));
}

void show(Session& session) {
    const unsigned gateway = readGateway(session);
    session.print(Json{{"gateway", addressOrNull(gateway)}},
                  fmt::format("gateway: {}\n", addressOrNone(gateway)));
}

unsigned parseGateway(const std::string& text) {
    if (parseIpv4(text) == 0) {
        throw UsageError("'0.0.0.0' is no gateway: 'mngctl gateway clear' removes it");
    }
    return parseHostAddress(text);
}

/// What the state of the board makes wrong.
void checkGateway(const Addressing& state, unsigned gateway, const std::string& text) {
    if (!state.hasAddress()) {
        return;
    }
    if (gateway == state.info.ipAddress) {
        throw UsageError(fmt::format("'{}' is the board's own address, not a gateway", text));
    }
    if (state.network().contains(gateway)) {
        checkIsHostIn(state.network(), gateway, text);
    }
}

/// The board removes the old route before it adds the new one.
std::string describeInForce(const Addressing& before, unsigned now) {
    const bool lost = before.gateway != 0 && now == 0;
    return describeGateway(now) +
           (lost ? fmt::format(", as {} is removed already", formatIpv4(before.gateway)) : "");
}

/// Makes the change; 0 removes the gateway.
void change(Session& session, const Addressing& before, unsigned gateway) {
    const auto way = wayIn();
    const bool needed = way && way->server == before.info.ipAddress && before.gateway != 0 &&
                        !before.network().contains(way->client);
    if (needed && gateway != before.gateway) {
        askBeforeCuttingOff(
            session, *way,
            fmt::format(
                "it is reached through the gateway {}, which {}", formatIpv4(before.gateway),
                gateway == 0 ? "is to be removed" : formatIpv4(gateway) + " is to replace"));
    }
    const bool outside = gateway != 0 && before.hasAddress() && !before.network().contains(gateway);
    const std::string what =
        gateway == 0 ? "remove the gateway" : "set the gateway " + formatIpv4(gateway);
    carryOut({what, request(session, rpc_network_set_gateway_1, gateway)}, [&] {
        return describeInForce(before, readGateway(session)) +
               (outside
                    ? fmt::format(" ({} is outside the board's network {})", formatIpv4(gateway),
                                  formatNetwork(before.network().withoutHostBits()))
                    : "");
    });
    readBack(session, show);
}

void set(Session& session, const std::string& text) {
    const unsigned gateway = parseGateway(text);
    const Addressing before = readAddressing(session);
    checkGateway(before, gateway, text);
    change(session, before, gateway);
}

void clear(Session& session) { change(session, readAddressing(session), 0); }

}  // namespace

void addGateway(CommandTree& tree) {
    Command& noun = tree.addNoun(
        "gateway", "Default gateways of the management interface",
        {"gateway show", "gateway set 192.0.2.254", "gateway set fe80::1", "gateway clear"});

    noun.addShow("show", "Show the default gateways", showBoth);

    Command& setCommand =
        noun.addCommand("set", "Set the default gateway of a family, in place of the one there is",
                        {"gateway set 192.0.2.254", "gateway set fe80::1",
                         "gateway set --yes 192.0.2.253     (without asking whoever comes in "
                         "through the old one)"});
    const Argument& address = setCommand.addArgument(
        "ADDRESS", "IPv4 address in the board's own network, or IPv6 address of a neighbour");
    setCommand.addYesFlag();
    setCommand.setAction([&address](Session& session) {
        const std::string text = address.one();
        if (looksLikeIpv6(text)) {
            setIpv6Gateway(session, parseIpv6Host(text));
        } else {
            set(session, text);
        }
    });

    Command& clearCommand = noun.addCommand(
        "clear", "Remove the IPv4 gateway, or the IPv6 gateway that was set by hand",
        {"gateway clear", "gateway clear --ipv6", "gateway clear --yes"});
    clearCommand.addYesFlag();
    const auto families = addFamilyFlags(clearCommand, "gateway");
    clearCommand.setAction([families](Session& session) {
        if (families->ipv4 || !families->ipv6) {
            clear(session);
        }
        if (families->ipv6) {
            clearIpv6Gateway(session);
        }
    });
}

}  // namespace mngctl
