#pragma once

#include "varo/sntpRecords.h"

#include <rpc/rpc.h>

/// The records that travel through the network RPC program, which are also the argument and result
/// types of the exported functions. Fields stand in wire order. IPv4 addresses are 32-bit values in
/// host byte order; fixed texts are zero-terminated; every bool is a 32-bit one; a `char*` is a
/// text that the decoder allocates and the free pass releases.

/// Outcome of an operation: 0 done, -1 failed; few operations have values of their own.
enum rpcNetworkResult : int {
    rpcNetworkUnknownAddressType = -5,
    rpcNetworkInvalidAddress = -6,
    rpcNetworkFailed = -1,
    rpcNetworkDone = 0,
};

using rpcNetworkIpAddress = unsigned int;

struct rpcMacAddress {
    unsigned char octets[6];
};

struct rpcSlotPort {
    unsigned int slot;
    unsigned int port;
};

enum rpcArpType : int { rpcArpOther = 1, rpcArpInvalid = 2, rpcArpDynamic = 3, rpcArpStatic = 4 };

enum rpcVlanMode : int { rpcVlanNone = 0, rpcVlanTagged = 1, rpcVlanNative = 2 };

enum rpcNetworkSprotocol : int { rpcSprotocolTls = 0, rpcSprotocolSsl = 1, rpcSprotocolBoth = 2 };

enum rpcSnmpCommunityAccess : int {
    rpcSnmpCommunityNone = -1,
    rpcSnmpCommunityReadOnly = 1,
    rpcSnmpCommunityReadWrite = 2,
};

enum rpcSnmpSystemSelector : int {
    rpcSnmpSystemContact = 1,
    rpcSnmpSystemLocation = 2,
    rpcSnmpSystemName = 3,
};

using rpcNetworkIPv6Proto = bool_t;
using rpcTelnetConfig = bool_t;
using rpcSshConfig = bool_t;

struct rpcStringResult {
    char text[100];
};

struct rpcNetworkArpInfo {
    rpcNetworkIpAddress ipAddress;
    rpcMacAddress macAddress;
    rpcSlotPort slotPort;
    rpcArpType type;
    unsigned int value;
};

struct rpcNetworkArpInfoResult {
    rpcNetworkArpInfo info;
    rpcNetworkResult result;
};

struct rpcNetworkInfo {
    rpcNetworkIpAddress ipAddress;
    rpcNetworkIpAddress netmask;
    rpcMacAddress macAddress;
    rpcMacAddress macAddress2;
    bool_t dhcpEnabled;
    bool_t vendorClassEnabled;
    unsigned int mngVlanId;
    bool_t option82Enabled;
    bool_t flag4;  ///< not filled
    bool_t flag5;  ///< not filled
    rpcVlanMode mngVlanMode;
    unsigned int defVid;
    rpcVlanMode defVlanMode;
};

struct rpcNetworkIpResult {
    rpcNetworkIpAddress ipAddress;
    bool_t flag;
};

struct rpcNetworkHttpInfo {
    bool_t httpEnabled;
    bool_t httpsEnabled;
    unsigned int httpsPort;
    rpcNetworkSprotocol httpsProtocol;
};

struct rpcNetworkHttpResult {
    rpcNetworkResult result;
    bool_t enabled;
};

/// Carried by no procedure.
struct rpcNetworkNtpInfo {
    bool_t enabled;
    unsigned int value;
};

/// Carried by no procedure.
struct rpcNetworkNtpServerResult {
    rpcNetworkIpAddress ipAddress;
    unsigned int value;
    rpcNetworkResult result;
};

struct rpcNetworkTimeResult {
    char time[30];
    rpcNetworkResult result;
};

struct rpcNetworkTimezone {
    int offset;
    char name[100];
};

struct rpcNetworkSntpTimezone {
    char name[100];
    int offset;
    int dstOffset;
    int dstSMonth;
    int dstSWeek;
    int dstSDayInWeek;
    int dstSTime;
    int dstEMonth;
    int dstEWeek;
    int dstEDayInWeek;
    int dstETime;
    int preset;
};

struct rpcNetworkDnsInfo {
    rpcNetworkIpAddress primary;
    rpcNetworkIpAddress secondary;
};

struct rpcNetworkDnsInfoWS {
    int result;
    rpcNetworkIpAddress primary;
    rpcNetworkIpAddress secondary;
};

struct rpcNetworkDomainWS {
    int result;
    char domain[100];
};

struct rpcNetworkIPv6DnsInfo {
    int result;
    char primary[100];
    char secondary[100];
};

struct rpcNetworkIPv6Domain {
    int result;
    char domain[100];
};

struct rpcNetworkIpv6Data {
    char addresses[2000];
    char gateway[100];
};

struct rpcNetworkRemoteAccessRule {
    unsigned int index;
    rpcNetworkIpAddress ipAddress;
    rpcNetworkIpAddress netmask;
    bool_t flag;  ///< true permits, false denies
};

struct rpcNetworkRemoteAccessResult {
    rpcNetworkResult result;
    rpcNetworkRemoteAccessRule rule;
};

struct rpcNetworkSWVersion {
    char product[100];
    char buildDirectory[100];
    char buildTime[100];
    char upgradeProduct[100];
    char packageRelease[100];
    char osRelease[100];
    char fileSystem[100];
    char bootLoader[100];
    char recoveryFileSystem[100];
};

struct rpcNetworkSWVersionComp {
    char line[100];
    int index;
};

struct rpcNetworkPackageVersion {
    char name[100];
    char version[100];  ///< `release` in network.x, where the RPC language reserves the word
};

struct rpcPtyConfig {
    unsigned int maxSessions;
    unsigned int value;
};

struct rpcSnmpManager {
    rpcNetworkIpAddress ipAddress;
    char community[100];
};

struct rpcSnmpTrapConfig {
    rpcSnmpManager managers[10];
    int port;
};

struct rpcSnmpCommunity {
    char name[32];
    rpcSnmpCommunityAccess access;
};

struct rpcSnmpCommunityConfig {
    rpcSnmpCommunity communities[6];
};

struct rpcSnmpSystemConfig {
    char contact[32];
    char location[32];
    char name[32];
};

struct rpcSntpInfoWS {
    int result;
    rpcSntpInfo info;
};

struct rpcSntpInfoWSHost {
    int result;
    rpcSntpInfoHost info;
};

struct rpcSntpConfigWS {
    int result;
    rpcSntpConfig config;
};

struct rpcSntpConfigWSHost {
    int result;
    rpcSntpConfigHost config;
};

// Arguments of the procedures that take more than one.

struct rpc_network_set_ip_1_argument {
    rpcNetworkIpAddress ipAddress;
    rpcNetworkIpAddress netmask;
};

struct rpc_network_set_dns_servers_1_argument {
    rpcNetworkIpAddress primary;
    rpcNetworkIpAddress secondary;
};

struct rpc_network_add_ra_rule_1_argument {
    rpcNetworkIpAddress ipAddress;
    rpcNetworkIpAddress netmask;
    bool_t flag;
    unsigned int index;
};

struct rpc_network_snmptrap_add_1_argument {
    char* community;
    rpcNetworkIpAddress ipAddress;
    bool_t flag;  ///< true adds, false deletes
};

struct rpc_network_snmptrap_change_1_argument {
    char* community;
    rpcNetworkIpAddress oldAddress;
    rpcNetworkIpAddress newAddress;
};

struct rpc_network_snmpcommunity_add_1_argument {
    char* name;
    rpcSnmpCommunityAccess access;
    bool_t flag;  ///< true adds, false deletes
};

struct rpc_network_snmpcommunity_change_1_argument {
    char* name;
    rpcSnmpCommunityAccess access;
};

struct rpc_network_snmpsystem_change_1_argument {
    char* text;
    rpcSnmpSystemSelector selector;
};

struct rpc_network_set_sntp_timezone_dst_start_1_argument {
    unsigned int month;
    unsigned int week;
    unsigned int dayInWeek;
    int time;
};

struct rpc_network_set_sntp_timezone_dst_end_1_argument {
    unsigned int month;
    unsigned int week;
    unsigned int dayInWeek;
    int time;
};

struct rpc_network_set_sntp_timezone_1_argument {
    int offset;
    char* name;
};

struct rpc_network_set_vendor_1_argument {
    bool_t dhcp;
    bool_t vendor;
};

struct rpc_network_set_option82_1_argument {
    bool_t dhcp;
    bool_t option82;
};

struct rpc_network_set_ipv6addr_1_argument {
    char* address;
    unsigned int prefixLength;
};

struct rpc_network_set_mgmt_vlan_mode_1_argument {
    unsigned int vlanId;
    rpcVlanMode mode;
};

struct rpc_network_set_def_vlan_mode_1_argument {
    unsigned int vlanId;
    rpcVlanMode mode;
};

struct rpc_network_set_ipv6dns_servers_1_argument {
    char* primary;
    char* secondary;
};
