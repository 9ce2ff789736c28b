#pragma once

#include "mngctl/wire/fields.h"

#include <control.h>

namespace mngctl {

// The fields of every record that a procedure carries, in wire order and by their names on the
// wire.

void fields(FieldVisitor& visit, rpcSlotPort& record);
void fields(FieldVisitor& visit, rpcStringResult& record);
void fields(FieldVisitor& visit, rpcNetworkArpInfo& record);
void fields(FieldVisitor& visit, rpcNetworkArpInfoResult& record);
void fields(FieldVisitor& visit, rpcNetworkInfo& record);
void fields(FieldVisitor& visit, rpcNetworkIpResult& record);
void fields(FieldVisitor& visit, rpcNetworkHttpInfo& record);
void fields(FieldVisitor& visit, rpcNetworkHttpResult& record);
void fields(FieldVisitor& visit, rpcNetworkTimeResult& record);
void fields(FieldVisitor& visit, rpcNetworkTimezone& record);
void fields(FieldVisitor& visit, rpcNetworkSntpTimezone& record);
void fields(FieldVisitor& visit, rpcNetworkDnsInfo& record);
void fields(FieldVisitor& visit, rpcNetworkDnsInfoWS& record);
void fields(FieldVisitor& visit, rpcNetworkDomainWS& record);
void fields(FieldVisitor& visit, rpcNetworkIPv6DnsInfo& record);
void fields(FieldVisitor& visit, rpcNetworkIPv6Domain& record);
void fields(FieldVisitor& visit, rpcNetworkIpv6Data& record);
void fields(FieldVisitor& visit, rpcNetworkRemoteAccessRule& record);
void fields(FieldVisitor& visit, rpcNetworkRemoteAccessResult& record);
void fields(FieldVisitor& visit, rpcNetworkSWVersion& record);
void fields(FieldVisitor& visit, rpcNetworkSWVersionComp& record);
void fields(FieldVisitor& visit, rpcNetworkPackageVersion& record);
void fields(FieldVisitor& visit, rpcPtyConfig& record);
void fields(FieldVisitor& visit, rpcSnmpManager& record);
void fields(FieldVisitor& visit, rpcSnmpTrapConfig& record);
void fields(FieldVisitor& visit, rpcSnmpCommunity& record);
void fields(FieldVisitor& visit, rpcSnmpCommunityConfig& record);
void fields(FieldVisitor& visit, rpcSnmpSystemConfig& record);

// Time service (sntpRecords.cpp).

void fields(FieldVisitor& visit, rpcSntpSrv& record);
void fields(FieldVisitor& visit, rpcSntpSrvHost& record);
void fields(FieldVisitor& visit, rpcSntpConfig& record);
void fields(FieldVisitor& visit, rpcSntpConfigHost& record);
void fields(FieldVisitor& visit, rpcSntpClientInfo& record);
void fields(FieldVisitor& visit, rpcSntpClientInfoHost& record);
void fields(FieldVisitor& visit, rpcSntpClientUnicastInfo& record);
void fields(FieldVisitor& visit, rpcSntpSrvInfo& record);
void fields(FieldVisitor& visit, rpcSntpSrvInfoHost& record);
void fields(FieldVisitor& visit, rpcSntpInfo& record);
void fields(FieldVisitor& visit, rpcSntpInfoHost& record);
void fields(FieldVisitor& visit, rpcSntpConfigWS& record);
void fields(FieldVisitor& visit, rpcSntpConfigWSHost& record);
void fields(FieldVisitor& visit, rpcSntpInfoWS& record);
void fields(FieldVisitor& visit, rpcSntpInfoWSHost& record);

// Arguments of the procedures that take more than one (argumentRecords.cpp).

void fields(FieldVisitor& visit, rpc_network_set_ip_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_dns_servers_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_add_ra_rule_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_snmptrap_add_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_snmptrap_change_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_snmpcommunity_add_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_snmpcommunity_change_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_snmpsystem_change_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_dst_start_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_dst_end_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_vendor_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_option82_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_ipv6addr_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_mgmt_vlan_mode_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_def_vlan_mode_1_argument& record);
void fields(FieldVisitor& visit, rpc_network_set_ipv6dns_servers_1_argument& record);

// The control program (controlRecords.cpp).

void fields(FieldVisitor& visit, controlReply& record);
void fields(FieldVisitor& visit, controlFeature& record);
void fields(FieldVisitor& visit, controlEntity& record);
void fields(FieldVisitor& visit, controlStatus& record);

}  // namespace mngctl
