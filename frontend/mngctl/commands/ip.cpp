#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/managementInterface.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

Json macOrNull(const rpcMacAddress& mac) {
    const bool known = std::ranges::any_of(mac.octets, [](auto octet) { return octet != 0; });
    return known ? Json(formatMac(mac.octets)) : Json();
}

std::string source(const rpcNetworkInfo& info) { return info.dhcpEnabled ? "dhcp" : "static"; }

Json describe(const Addressing& state) {
    const rpcNetworkInfo& info = state.info;
    Json json = describeInterface(state.network());
    json["source"] = source(info);
    json["macAddress"] = macOrNull(info.macAddress);
    json["gateway"] = addressOrNull(state.gateway);
    json["managementVlan"] = info.mngVlanId == 0 ? Json() : Json(info.mngVlanId);
    return json;
}

std::string orUnknown(const Json& value) {
    if (value.is_null()) {
        return "unknown";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string lines(const Addressing& state) {
    const bool known = state.hasAddress();
    const Json json = describe(state);
    return fmt::format(
        "address: {}\nmask: {}\nsource: {}\nMAC: {}\ngateway: {}\n"
        "management VLAN: {}\n",
        known ? formatNetwork(state.network()) : "none",
        known ? formatIpv4(state.info.netmask) : "none", source(state.info),
        orUnknown(json["macAddress"]), addressOrNone(state.gateway),
        orUnknown(json["managementVlan"]));
}

void show(Session& session) {
    const Addressing state = readAddressing(session);
    const Ipv6State ipv6 = readIpv6State(session);
    Json json = describe(state);
    json["ipv6"] = describe(ipv6);
    session.print(json, lines(state) + lines(ipv6, "IPv6 "));
}

/// What a refused change of the address has left behind.
std::string describeInForce(const Addressing& state) {
    const std::string dhcp = state.info.dhcpEnabled ? "DHCP on" : "DHCP off";
    if (state.hasAddress()) {
        return fmt::format("the address {}, {}, {}", formatNetwork(state.network()), dhcp,
                           describeGateway(state.gateway));
    }
    return fmt::format(
        "no address, {}, {}: 'mngctl ip set' with an address that the board takes, or 'mngctl dhcp "
        "on', gives it one again",
        dhcp, describeGateway(state.gateway));
}

void askBefore(Session& session, const Addressing& before, const Ipv4Network& wanted) {
    const auto way = wayIn();
    if (!way || way->server != before.info.ipAddress) {
        return;
    }
    if (wanted.address != way->server) {
        return askBeforeCuttingOff(
            session, *way,
            fmt::format("it came in over {}, which {} takes the place of",
                        formatNetwork(before.network()), formatNetwork(wanted)));
    }
    if (reaches(before.network(), before.gateway, way->client) &&
        !reaches(wanted, before.gateway, way->client)) {
        askBeforeCuttingOff(session, *way,
                            fmt::format("no way leads back there from {} with {}",
                                        formatNetwork(wanted), describeGateway(before.gateway)));
    }
}

/// The board sets the old gateway again, and says nothing if it cannot.
void tellLostGateway(Session& session, const Addressing& before, const Addressing& after) {
    if (before.gateway == 0 || after.gateway != 0) {
        return;
    }
    session.streams.err << fmt::format(
        "mngctl: the gateway {} is gone{}; 'mngctl gateway set' sets another\n",
        formatIpv4(before.gateway),
        after.network().contains(before.gateway)
            ? ""
            : fmt::format(": it is not in {}", formatNetwork(after.network().withoutHostBits())));
}

void set(Session& session, const std::string& address, const std::string& mask) {
    const Ipv4Network wanted = parseInterfaceAddress(address, mask);
    const Addressing before = readAddressing(session);
    askBefore(session, before, wanted);
    carryOut({fmt::format("set the address {}", formatNetwork(wanted)),
              request(session, rpc_network_set_ip_1,
                      rpc_network_set_ip_1_argument{wanted.address, wanted.mask})},
             [&] { return describeInForce(readAddressing(session)); });
    readBack(session, [&](Session&) {
        const Addressing after = readAddressing(session);
        session.print(describe(after), lines(after));
        tellLostGateway(session, before, after);
    });
}

}  // namespace

void addIp(CommandTree& tree) {
    Command& noun = tree.addNoun("ip", "Addresses of the management interface",
                                 {"ip show", "ip set 192.0.2.10/24",
                                  "ip set 192.0.2.10 255.255.255.0", "ip set 2001:db8::7/64"});

    noun.addShow("show",
                 "Show the addresses, where they come from, the MAC address, the gateways and the "
                 "management VLAN",
                 show);

    Command& setCommand = noun.addCommand(
        "set",
        "Set a static address; an IPv4 one switches the DHCP client off, an IPv6 one leaves all "
        "else as it is",
        {"ip set 192.0.2.10/24", "ip set 192.0.2.10 255.255.255.0", "ip set 2001:db8::7/64",
         "ip set --yes 192.0.2.10/24     (without asking whoever came in over the old address)"});
    const Argument& address =
        setCommand.addArgument("ADDRESS", "IPv4 or IPv6 address, with /PREFIX or before MASK");
    const Argument& mask = setCommand.addOptionalArgument(
        "MASK",
        "Mask such as 255.255.255.0, or the prefix length of an IPv6 address, if there is no "
        "/PREFIX");
    setCommand.addYesFlag();
    setCommand.setAction([&address, &mask](Session& session) {
        const std::string text = address.one();
        const std::string length = mask.one();
        if (looksLikeIpv6(text)) {
            setIpv6Address(session, parseIpv6InterfaceAddress(text, length));
        } else {
            set(session, text, length);
        }
    });
}

}  // namespace mngctl
