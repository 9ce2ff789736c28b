#include "mngctl/commands/ipv6State.h"

#include "mngctl/commands/changes.h"
#include "mngctl/commands/wayIn.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/recordFields.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

namespace mngctl {

namespace {

std::optional<WayIn6> wayIn6() { return parseWayIn6(sshConnection()); }

/// Whether answers to the caller go through a gateway.
bool isReachedThroughGateway(const Ipv6State& state, const WayIn6& way) {
    return !state.gateway.empty() &&
           std::ranges::none_of(state.addresses, [&](const std::string& text) {
               const Ipv6Network network = readIpv6Network(text);
               return network.length != 0 && isInIpv6Network(network, way.client);
           });
}

void askBeforeChangingGateway(Session& session, bool yes, const std::string& what) {
    const auto way = wayIn6();
    if (!way || yes) {
        return;
    }
    const Ipv6State before = readIpv6State(session);
    if (isReachedThroughGateway(before, *way)) {
        askBeforeCuttingOff(
            session, yes, way->client,
            fmt::format("it is reached through the gateway {}, which {}", before.gateway, what));
    }
}

void changeAndShow(Session& session, const Change& change) {
    carryOut(change, [&] { return describeInForce(readIpv6State(session)); });
    readBack(session, [&] {
        const Ipv6State after = readIpv6State(session);
        session.print(describe(after), lines(after, ""));
    });
}

}  // namespace

Ipv6State readIpv6State(Session& session) {
    rpcNetworkIpv6Data data{};
    session.client.call(networkProgram, rpc_network_get_ipv6addr_1, data);
    const Json json = toJson(data);
    Ipv6State state;
    std::istringstream words(json["addresses"].get<std::string>());
    for (std::string word; words >> word;) {
        state.addresses.push_back(word);
    }
    state.gateway = json["gateway"].get<std::string>();
    bool_t dhcp = FALSE;
    session.client.call(networkProgram, rpc_network_get_ipv6proto_1, dhcp);
    state.dhcp = dhcp != FALSE;
    return state;
}

Json describe(const Ipv6State& state) {
    return Json{{"addresses", state.addresses},
                {"gateway", state.gateway.empty() ? Json() : Json(state.gateway)},
                {"dhcp", state.dhcp}};
}

std::string lines(const Ipv6State& state, const std::string& prefix) {
    std::string text;
    for (const std::string& address : state.addresses) {
        text += fmt::format("{}address: {}\n", prefix, printable(address));
    }
    if (state.addresses.empty()) {
        text += fmt::format("{}address: none\n", prefix);
    }
    return text + fmt::format("{}gateway: {}\n{}DHCP client: {}\n", prefix,
                              state.gateway.empty() ? "none" : printable(state.gateway), prefix,
                              state.dhcp ? "on" : "off");
}

std::string describeInForce(const Ipv6State& state) {
    std::string addresses;
    for (const std::string& address : state.addresses) {
        addresses += (addresses.empty() ? "" : ", ") + printable(address);
    }
    return fmt::format(
        "{}, {}, DHCPv6 {}", addresses.empty() ? "no IPv6 address" : addresses,
        state.gateway.empty() ? "no gateway" : "the gateway " + printable(state.gateway),
        state.dhcp ? "on" : "off");
}

std::optional<WayIn6> parseWayIn6(std::string_view connection) {
    const auto ends = connectionEnds(connection);
    if (!ends) {
        return std::nullopt;
    }
    const auto& [client, server] = *ends;
    try {
        // A link-local end stands with the zone of the board's interface.
        return WayIn6{parseIpv6Host(client.substr(0, client.find('%'))),
                      parseIpv6Host(server.substr(0, server.find('%')))};
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

void askBeforeLosing(Session& session, bool yes, const std::string& reason,
                     const std::function<bool(const Ipv6Network&)>& isAtRisk) {
    const auto way = wayIn6();
    if (!way || yes) {
        return;
    }
    for (const std::string& text : readIpv6State(session).addresses) {
        const Ipv6Network network = readIpv6Network(text);
        if (network.length != 0 && network.address == way->server && isAtRisk(network)) {
            return askBeforeCuttingOff(session, yes, way->client,
                                       fmt::format("it came in over {}, {}", text, reason));
        }
    }
}

void setIpv6Address(Session& session, bool yes, const Ipv6Network& wanted) {
    const std::string text = formatIpv6Network(wanted);
    askBeforeLosing(session, yes, fmt::format("which {} can take the place of", text),
                    [&](const Ipv6Network& network) {
                        return isGlobal(network) && formatIpv6Network(network) != text;
                    });
    std::string address = wanted.address;
    changeAndShow(session,
                  {"set the address " + text,
                   request(session, rpc_network_set_ipv6addr_1,
                           rpc_network_set_ipv6addr_1_argument{address.data(), wanted.length})});
}

void setIpv6Gateway(Session& session, bool yes, const std::string& gateway) {
    askBeforeChangingGateway(session, yes, gateway + " is to replace");
    std::string text = gateway;
    changeAndShow(session, {"set the gateway " + gateway,
                            request(session, rpc_network_set_ipv6gw_1, text.data())});
}

void clearIpv6Gateway(Session& session, bool yes) {
    askBeforeChangingGateway(session, yes, "is to be removed");
    changeAndShow(session, {"remove the IPv6 gateway that was set by hand",
                            request(session, rpc_network_remove_ipv6gw_1)});
}

}  // namespace mngctl
