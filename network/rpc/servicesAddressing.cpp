// Server functions of addressing: IPv4, DHCP, gateway, VLAN, IPv6, ARP and the ONT's interface.

#include "network/exports.h"
#include "network/rpc/services.h"

#include <algorithm>
#include <iterator>

rpcNetworkArpInfoResult* rpc_network_get_next_arp_1_svc(int index, svc_req*) {
    static rpcNetworkArpInfoResult result;
    rpcNetworkArpInfo& wire = result.info;
    Network::ArpInfo info{wire.ipAddress,     {},        wire.slotPort.slot,
                          wire.slotPort.port, wire.type, wire.value};
    std::ranges::copy(wire.macAddress.octets, info.macAddr);
    storeStatus(result.result, networkGetNextArp(index, &info));
    wire.ipAddress = info.ipAddr;
    std::ranges::copy(info.macAddr, wire.macAddress.octets);
    wire.slotPort = {info.slot, info.port};
    wire.type = static_cast<rpcArpType>(info.type);
    wire.value = info.value;
    return &result;
}

rpcNetworkResult* rpc_network_set_ip_1_svc(rpcNetworkIpAddress ipAddress,
                                           rpcNetworkIpAddress netmask, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetIp(ipAddress, netmask));
}

rpcNetworkResult* rpc_network_set_vlan_1_svc(unsigned int vlanId, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetVlan(vlanId));
}

rpcNetworkInfo* rpc_network_get_network_info_1_svc(svc_req*) {
    static rpcNetworkInfo result;
    networkGetNetworkInfo(&result);
    return &result;
}

rpcNetworkResult* rpc_network_set_gateway_1_svc(rpcNetworkIpAddress gateway, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetGateway(gateway));
}

rpcNetworkIpResult* rpc_network_get_gateway_1_svc(svc_req*) {
    static rpcNetworkIpResult result;
    networkGetGateway(&result.ipAddress);
    return &result;
}

rpcNetworkResult* rpc_network_set_protocol_1_svc(bool_t dhcp, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetProtocol(dhcp));
}

rpcNetworkResult* rpc_network_set_vendor_1_svc(bool_t dhcp, bool_t vendor, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetVendor(dhcp, vendor));
}

rpcNetworkResult* rpc_network_set_option82_1_svc(bool_t dhcp, bool_t option82, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetOption82(dhcp, option82));
}

rpcNetworkIpv6Data* rpc_network_get_ipv6addr_1_svc(svc_req*) {
    static rpcNetworkIpv6Data result;
    networkGetIpv6Addr(result.addresses, result.gateway);
    return &result;
}

rpcNetworkResult* rpc_network_set_ipv6addr_1_svc(char* address, unsigned int prefixLength,
                                                 svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetIpv6Addr(address, prefixLength));
}

rpcNetworkResult* rpc_network_set_ipv6gw_1_svc(char* gateway, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetIpv6Gw(gateway));
}

rpcNetworkResult* rpc_network_remove_ipv6addr_1_svc(svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkRemoveIpv6Addr());
}

rpcNetworkResult* rpc_network_remove_ipv6gw_1_svc(svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkRemoveIpv6Gw());
}

/// The mode of the management VLAN cannot be set: the request is accepted and changes nothing.
rpcNetworkResult* rpc_network_set_mgmt_vlan_mode_1_svc(unsigned int, rpcVlanMode, svc_req*) {
    static rpcNetworkResult result;
    return &result;
}

rpcNetworkResult* rpc_network_set_def_vlan_mode_1_svc(unsigned int vlanId, rpcVlanMode mode,
                                                      svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetDefVlanMode(vlanId, static_cast<unsigned int>(mode)));
}

/// Of the record, only address, mask and VLAN mean anything here.
rpcNetworkResult* rpc_network_set_ont_nmg_1_svc(rpcNetworkInfo* info, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetOntMng(info->ipAddress, info->netmask, info->mngVlanId));
}

/// The record has no place for a failure, which is answered with zeros.
rpcNetworkInfo* rpc_network_get_ont_nmg_1_svc(svc_req*) {
    static rpcNetworkInfo result;
    result = {};
    if (networkGetOntMng(&result.ipAddress, &result.netmask, &result.mngVlanId) != 0) {
        result.ipAddress = 0;
        result.netmask = 0;
        result.mngVlanId = 0;
    }
    return &result;
}

rpcNetworkIPv6Proto* rpc_network_get_ipv6proto_1_svc(svc_req*) {
    static rpcNetworkIPv6Proto result;
    bool state = result != FALSE;
    networkGetIPv6Proto(&state);
    result = state;
    return &result;
}

/// The outcome is deliberately not reported: the client always sees 0.
rpcNetworkResult* rpc_network_set_ipv6proto_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    networkSetIPv6Proto(on);
    return &result;
}
