// Fakes of the exported functions of addressing: IPv4, DHCP, gateway, VLAN, IPv6, ARP and the ONT's
// interface.

#include "exported/ExportedCall.h"
#include "network/exports.h"

int networkGetNextArp(int index, Network::ArpInfo* info) {
    return ExportedCall("networkGetNextArp", index).fill(info).end();
}

int networkSetIp(unsigned int ipAddr, unsigned int netmask) {
    return ExportedCall("networkSetIp", ipAddr, netmask).end();
}

int networkSetVlan(unsigned int vlanId) { return ExportedCall("networkSetVlan", vlanId).end(); }

int networkSetDefVlanMode(unsigned int defVid, unsigned int defMode) {
    return ExportedCall("networkSetDefVlanMode", defVid, defMode).end();
}

int networkGetNetworkInfo(rpcNetworkInfo* out) {
    return ExportedCall("networkGetNetworkInfo").fill(out).end();
}

int networkSetGateway(unsigned int gateway) {
    return ExportedCall("networkSetGateway", gateway).end();
}

int networkGetGateway(unsigned int* gateway) {
    return ExportedCall("networkGetGateway").fill(gateway).end();
}

int networkSetProtocol(int dhcp) { return ExportedCall("networkSetProtocol", dhcp).end(); }

int networkGetIPv6Proto(bool* state) {
    return ExportedCall("networkGetIPv6Proto").fill(state).end();
}

int networkSetIPv6Proto(int on) { return ExportedCall("networkSetIPv6Proto", on).end(); }

int networkSetVendor(int dhcp, int vendor) {
    return ExportedCall("networkSetVendor", dhcp, vendor).end();
}

int networkSetOption82(int dhcp, int option82) {
    return ExportedCall("networkSetOption82", dhcp, option82).end();
}

int networkGetIpv6Addr(char* addresses, char* gateway) {
    return ExportedCall("networkGetIpv6Addr")
        .fill(OutputText{addresses, 2000}, OutputText{gateway, 100})
        .end();
}

int networkSetIpv6Addr(char* address, unsigned int prefixLength) {
    return ExportedCall("networkSetIpv6Addr", address, prefixLength).end();
}

int networkSetIpv6Gw(char* gateway) { return ExportedCall("networkSetIpv6Gw", gateway).end(); }

int networkRemoveIpv6Addr() { return ExportedCall("networkRemoveIpv6Addr").end(); }

int networkRemoveIpv6Gw() { return ExportedCall("networkRemoveIpv6Gw").end(); }

int networkSetOntMng(unsigned int ipAddr, unsigned int netmask, unsigned int vlanId) {
    return ExportedCall("networkSetOntMng", ipAddr, netmask, vlanId).end();
}

int networkGetOntMng(unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId) {
    return ExportedCall("networkGetOntMng").fill(ipAddr, netmask, vlanId).end();
}
