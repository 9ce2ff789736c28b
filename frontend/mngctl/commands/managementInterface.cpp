#include "mngctl/commands/managementInterface.h"

#include "mngctl/commands/texts.h"

#include <fmt/format.h>

#include <sstream>

namespace mngctl {

rpcNetworkInfo readNetworkInfo(Session& session) {
    return session.ask(rpc_network_get_network_info_1);
}

unsigned readGateway(Session& session) { return session.ask(rpc_network_get_gateway_1).ipAddress; }

Addressing readAddressing(Session& session) {
    const rpcNetworkInfo info = readNetworkInfo(session);
    return {info, readGateway(session)};
}

bool reaches(const Ipv4Network& network, unsigned gateway, unsigned address) {
    return network.contains(address) || (gateway != 0 && network.contains(gateway));
}

Json describeInterface(const Ipv4Network& network) {
    const bool known = network.address != 0;
    const auto length = prefixLength(network.mask);
    return Json{{"address", addressOrNull(network.address)},
                {"prefixLength", known && length ? Json(*length) : Json()},
                {"netmask", known ? Json(formatIpv4(network.mask)) : Json()}};
}

Json addressOrNull(unsigned address) { return address == 0 ? Json() : Json(formatIpv4(address)); }

std::string addressOrNone(unsigned address) { return address == 0 ? "none" : formatIpv4(address); }

std::string describeGateway(unsigned gateway) {
    return gateway == 0 ? "no gateway" : "the gateway " + formatIpv4(gateway);
}

Ipv6State readIpv6State(Session& session) {
    const auto data = session.ask(rpc_network_get_ipv6addr_1);
    Ipv6State state;
    std::istringstream words(textOf(data.addresses));
    for (std::string word; words >> word;) {
        state.addresses.push_back(word);
    }
    state.gateway = textOf(data.gateway);
    state.dhcp = session.ask(rpc_network_get_ipv6proto_1) != FALSE;
    return state;
}

Json describe(const Ipv6State& state) {
    return Json{
        {"addresses", state.addresses}, {"gateway", orNull(state.gateway)}, {"dhcp", state.dhcp}};
}

std::string lines(const Ipv6State& state, const std::string& prefix) {
    std::string text;
    for (const std::string& address : state.addresses) {
        text += fmt::format("{}address: {}\n", prefix, printable(address));
    }
    if (state.addresses.empty()) {
        text += fmt::format("{}address: none\n", prefix);
    }
    return text + fmt::format("{}gateway: {}\n{}DHCP client: {}\n", prefix, orNone(state.gateway),
                              prefix, onOff(state.dhcp));
}

}  // namespace mngctl
