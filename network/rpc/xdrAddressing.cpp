// Filters of the records of addressing, name resolution and remote access.

#include "network/rpc/xdrFields.h"

#include <algorithm>

using wire::flag;
using wire::run;
using wire::xdrFields;

bool_t xdr_rpcMacAddress(XDR* xdrs, rpcMacAddress* r) {
    return std::ranges::all_of(r->octets,
                               [xdrs](u_char& octet) { return xdr_u_char(xdrs, &octet) != FALSE; })
               ? TRUE
               : FALSE;
}

bool_t xdr_rpcSlotPort(XDR* xdrs, rpcSlotPort* r) { return xdrFields(xdrs, r->slot, r->port); }

bool_t xdr_rpcStringResult(XDR* xdrs, rpcStringResult* r) { return xdrFields(xdrs, r->text); }

bool_t xdr_rpcNetworkArpInfo(XDR* xdrs, rpcNetworkArpInfo* r) {
    return xdrFields(xdrs, r->ipAddress, r->macAddress, r->slotPort, r->type, r->value);
}

bool_t xdr_rpcNetworkArpInfoResult(XDR* xdrs, rpcNetworkArpInfoResult* r) {
    return xdrFields(xdrs, r->info, r->result);
}

bool_t xdr_rpcNetworkInfo(XDR* xdrs, rpcNetworkInfo* r) {
    return xdrFields(xdrs, r->ipAddress, r->netmask, r->macAddress, r->macAddress2,
                     run(flag(r->dhcpEnabled), flag(r->vendorClassEnabled), r->mngVlanId,
                         flag(r->option82Enabled), flag(r->flag4), flag(r->flag5)),
                     r->mngVlanMode, r->defVid, r->defVlanMode);
}

bool_t xdr_rpcNetworkIpResult(XDR* xdrs, rpcNetworkIpResult* r) {
    return xdrFields(xdrs, r->ipAddress, flag(r->flag));
}

bool_t xdr_rpcNetworkDnsInfo(XDR* xdrs, rpcNetworkDnsInfo* r) {
    return xdrFields(xdrs, r->primary, r->secondary);
}

bool_t xdr_rpcNetworkDnsInfoWS(XDR* xdrs, rpcNetworkDnsInfoWS* r) {
    return xdrFields(xdrs, r->result, r->primary, r->secondary);
}

bool_t xdr_rpcNetworkDomainWS(XDR* xdrs, rpcNetworkDomainWS* r) {
    return xdrFields(xdrs, r->result, r->domain);
}

bool_t xdr_rpcNetworkIPv6DnsInfo(XDR* xdrs, rpcNetworkIPv6DnsInfo* r) {
    return xdrFields(xdrs, r->result, r->primary, r->secondary);
}

bool_t xdr_rpcNetworkIPv6Domain(XDR* xdrs, rpcNetworkIPv6Domain* r) {
    return xdrFields(xdrs, r->result, r->domain);
}

bool_t xdr_rpcNetworkIpv6Data(XDR* xdrs, rpcNetworkIpv6Data* r) {
    return xdrFields(xdrs, r->addresses, r->gateway);
}

bool_t xdr_rpcNetworkRemoteAccessRule(XDR* xdrs, rpcNetworkRemoteAccessRule* r) {
    return xdrFields(xdrs, r->index, r->ipAddress, r->netmask, flag(r->flag));
}

bool_t xdr_rpcNetworkRemoteAccessResult(XDR* xdrs, rpcNetworkRemoteAccessResult* r) {
    return xdrFields(xdrs, r->result, r->rule);
}

bool_t xdr_rpc_network_set_ip_1_argument(XDR* xdrs, rpc_network_set_ip_1_argument* r) {
    return xdrFields(xdrs, r->ipAddress, r->netmask);
}

bool_t xdr_rpc_network_set_dns_servers_1_argument(XDR* xdrs,
                                                  rpc_network_set_dns_servers_1_argument* r) {
    return xdrFields(xdrs, r->primary, r->secondary);
}

bool_t xdr_rpc_network_add_ra_rule_1_argument(XDR* xdrs, rpc_network_add_ra_rule_1_argument* r) {
    return xdrFields(xdrs, r->ipAddress, r->netmask, flag(r->flag), r->index);
}

bool_t xdr_rpc_network_set_vendor_1_argument(XDR* xdrs, rpc_network_set_vendor_1_argument* r) {
    return xdrFields(xdrs, flag(r->dhcp), flag(r->vendor));
}

bool_t xdr_rpc_network_set_option82_1_argument(XDR* xdrs, rpc_network_set_option82_1_argument* r) {
    return xdrFields(xdrs, flag(r->dhcp), flag(r->option82));
}

bool_t xdr_rpc_network_set_ipv6addr_1_argument(XDR* xdrs, rpc_network_set_ipv6addr_1_argument* r) {
    return xdrFields(xdrs, r->address, r->prefixLength);
}

bool_t xdr_rpc_network_set_mgmt_vlan_mode_1_argument(XDR* xdrs,
                                                     rpc_network_set_mgmt_vlan_mode_1_argument* r) {
    return xdrFields(xdrs, r->vlanId, r->mode);
}

bool_t xdr_rpc_network_set_def_vlan_mode_1_argument(XDR* xdrs,
                                                    rpc_network_set_def_vlan_mode_1_argument* r) {
    return xdrFields(xdrs, r->vlanId, r->mode);
}

bool_t xdr_rpc_network_set_ipv6dns_servers_1_argument(
    XDR* xdrs, rpc_network_set_ipv6dns_servers_1_argument* r) {
    return xdrFields(xdrs, r->primary, r->secondary);
}
