// Fakes of the exported functions of addressing: IPv4, DHCP, gateway, VLAN, IPv6, ARP and the ONT's
// interface.

#include "exported/ExportedCall.h"
#include "network/exports.h"

int networkGetNextArp(int index, Network::ArpInfo* info) {
    return ExportedCall("networkGetNextArp", index).fill(info).end();
}

FAKE(networkSetIp, (unsigned int ipAddr, unsigned int netmask), ipAddr, netmask)
FAKE(networkSetVlan, (unsigned int vlanId), vlanId)
FAKE(networkSetDefVlanMode, (unsigned int defVid, unsigned int defMode), defVid, defMode)
FILLING_FAKE(networkGetNetworkInfo, (rpcNetworkInfo * out), out)
FAKE(networkSetGateway, (unsigned int gateway), gateway)
FILLING_FAKE(networkGetGateway, (unsigned int* gateway), gateway)
FAKE(networkSetProtocol, (int dhcp), dhcp)
FILLING_FAKE(networkGetIPv6Proto, (bool* state), state)
FAKE(networkSetIPv6Proto, (int on), on)
FAKE(networkSetVendor, (int dhcp, int vendor), dhcp, vendor)
FAKE(networkSetOption82, (int dhcp, int option82), dhcp, option82)
FILLING_FAKE(networkGetIpv6Addr, (char* addresses, char* gateway), OutputText{addresses, 2000},
             OutputText{gateway, 100})
FAKE(networkSetIpv6Addr, (char* address, unsigned int prefixLength), address, prefixLength)
FAKE(networkSetIpv6Gw, (char* gateway), gateway)
FAKE(networkRemoveIpv6Addr, ())
FAKE(networkRemoveIpv6Gw, ())
FAKE(networkSetOntMng, (unsigned int ipAddr, unsigned int netmask, unsigned int vlanId), ipAddr,
     netmask, vlanId)
FILLING_FAKE(networkGetOntMng, (unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId),
             ipAddr, netmask, vlanId)
