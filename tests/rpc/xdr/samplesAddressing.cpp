// Samples of the records of addressing, name resolution and remote access.

#include "network/rpc/records.h"
#include "samples.h"

std::vector<Sample> samplesOfAddressing() {
    const rpcMacAddress stationMac = {{0x02, 0x80, 0xff, 0x7f, 0x00, 0xa5}};
    const rpcSlotPort slotPort = {.slot = 3, .port = 0x80000001};
    const rpcNetworkArpInfo arp = {.ipAddress = address(192, 168, 1, 20),
                                   .macAddress = stationMac,
                                   .slotPort = slotPort,
                                   .type = rpcArpDynamic,
                                   .value = 77};
    const rpcNetworkRemoteAccessRule rule = {.index = 5,
                                             .ipAddress = address(10, 20, 0, 0),
                                             .netmask = address(255, 255, 0, 0),
                                             .flag = TRUE};
    return {
        sample<rpcNetworkResult>("rpcNetworkResult", rpcNetworkInvalidAddress),
        sample<rpcNetworkIpAddress>("rpcNetworkIpAddress", address(192, 168, 1, 2)),
        sample("rpcMacAddress", stationMac),
        sample("rpcSlotPort", slotPort),
        sample<rpcArpType>("rpcArpType", rpcArpStatic),
        sample<rpcVlanMode>("rpcVlanMode", rpcVlanNative),
        sample<rpcNetworkIPv6Proto>("rpcNetworkIPv6Proto", TRUE),
        // What stands behind a text's end travels with it.
        sample<rpcStringResult>("rpcStringResult", {.text = "MSK\0\0left over"}),
        sample("rpcNetworkArpInfo", arp),
        sample<rpcNetworkArpInfoResult>("rpcNetworkArpInfoResult",
                                        {.info = arp, .result = rpcNetworkFailed}),
        sample<rpcNetworkInfo>("rpcNetworkInfo",
                               {.ipAddress = address(192, 168, 1, 2),
                                .netmask = address(255, 255, 255, 0),
                                .macAddress = stationMac,
                                .macAddress2 = {{0x02, 0x11, 0x22, 0x33, 0x44, 0x55}},
                                // Any value but 0 is sent as 1.
                                .dhcpEnabled = 5,
                                .vendorClassEnabled = FALSE,
                                .mngVlanId = 4094,
                                .option82Enabled = -1,
                                .flag4 = FALSE,
                                .flag5 = TRUE,
                                .mngVlanMode = rpcVlanNative,
                                .defVid = 100,
                                .defVlanMode = rpcVlanTagged}),
        sample<rpcNetworkIpResult>("rpcNetworkIpResult",
                                   {.ipAddress = address(192, 168, 1, 1), .flag = TRUE}),
        sample<rpcNetworkDnsInfo>("rpcNetworkDnsInfo", {.primary = address(8, 8, 4, 4),
                                                        .secondary = address(1, 0, 0, 1)}),
        sample<rpcNetworkDnsInfoWS>(
            "rpcNetworkDnsInfoWS",
            {.result = -1, .primary = address(8, 8, 4, 4), .secondary = address(1, 0, 0, 1)}),
        sample<rpcNetworkDomainWS>("rpcNetworkDomainWS",
                                   {.result = -1, .domain = "access.example.net"}),
        sample<rpcNetworkIPv6DnsInfo>(
            "rpcNetworkIPv6DnsInfo",
            {.result = -1, .primary = "2001:db8::53", .secondary = "fd00::5:3"}),
        sample<rpcNetworkIPv6Domain>("rpcNetworkIPv6Domain",
                                     {.result = -2, .domain = "v6.example.net"}),
        sample<rpcNetworkIpv6Data>("rpcNetworkIpv6Data",
                                   {.addresses = "2001:db8:1::2/64\nfe80::80:ffff:fe7f:a5/64\n",
                                    .gateway = "2001:db8:1::1"}),
        sample("rpcNetworkRemoteAccessRule", rule),
        sample<rpcNetworkRemoteAccessResult>("rpcNetworkRemoteAccessResult",
                                             {.result = rpcNetworkDone, .rule = rule}),
        sample<rpc_network_set_ip_1_argument>(
            "rpc_network_set_ip_1_argument",
            {.ipAddress = address(192, 168, 1, 2), .netmask = address(255, 255, 255, 0)}),
        sample<rpc_network_set_dns_servers_1_argument>(
            "rpc_network_set_dns_servers_1_argument",
            {.primary = address(8, 8, 4, 4), .secondary = address(1, 0, 0, 1)}),
        sample<rpc_network_add_ra_rule_1_argument>("rpc_network_add_ra_rule_1_argument",
                                                   {.ipAddress = address(10, 20, 0, 0),
                                                    .netmask = address(255, 255, 0, 0),
                                                    .flag = 5,
                                                    .index = 0xffffffff}),
        sample<rpc_network_set_vendor_1_argument>("rpc_network_set_vendor_1_argument",
                                                  {.dhcp = FALSE, .vendor = TRUE}),
        sample<rpc_network_set_option82_1_argument>("rpc_network_set_option82_1_argument",
                                                    {.dhcp = TRUE, .option82 = FALSE}),
        sample<rpc_network_set_ipv6addr_1_argument>(
            "rpc_network_set_ipv6addr_1_argument",
            {.address = text("2001:db8:1::2"), .prefixLength = 64}),
        sample<rpc_network_set_mgmt_vlan_mode_1_argument>(
            "rpc_network_set_mgmt_vlan_mode_1_argument", {.vlanId = 4094, .mode = rpcVlanTagged}),
        sample<rpc_network_set_def_vlan_mode_1_argument>("rpc_network_set_def_vlan_mode_1_argument",
                                                         {.vlanId = 100, .mode = rpcVlanNative}),
        sample<rpc_network_set_ipv6dns_servers_1_argument>(
            "rpc_network_set_ipv6dns_servers_1_argument",
            {.primary = text("2001:db8::53"), .secondary = text("")}),
    };
}
