#include "mngctl/commands/addressing.h"

#include "mngctl/wire/values.h"

namespace mngctl {

rpcNetworkInfo readNetworkInfo(Session& session) {
    rpcNetworkInfo info{};
    session.client.call(networkProgram, rpc_network_get_network_info_1, info);
    return info;
}

Addressing readAddressing(Session& session) {
    Addressing state{readNetworkInfo(session)};
    rpcNetworkIpResult gateway{};
    session.client.call(networkProgram, rpc_network_get_gateway_1, gateway);
    state.gateway = gateway.ipAddress;
    return state;
}

bool reaches(const Ipv4Network& network, unsigned gateway, unsigned address) {
    return network.contains(address) || (gateway != 0 && network.contains(gateway));
}

Json addressOrNull(unsigned address) { return address == 0 ? Json() : Json(formatIpv4(address)); }

std::string addressOrNone(unsigned address) { return address == 0 ? "none" : formatIpv4(address); }

std::string describeGateway(unsigned gateway) {
    return gateway == 0 ? "no gateway" : "the gateway " + formatIpv4(gateway);
}

}  // namespace mngctl
