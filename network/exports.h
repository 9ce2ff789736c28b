#pragma once

#include "network/Network.h"
#include "network/rpc/wireRecords.h"

/// The flat interface of the network entity, for the RPC program and for other entities of the
/// process. Each function makes the one entity if need be, calls its operation and
/// returns its result: 0 on success, -1 on failure, or what the operation says. Nothing is checked,
/// logged or caught here. Addresses are in host byte order (name servers in the callers' own); a
/// flag taken as an int is on for any value but 0; records, buffers and texts stay the caller's.

#pragma GCC visibility push(default)
extern "C" {

/// FTP server. The state is 0 while it is on and 1 while it is off, or a code of varoLib.
int networkFtpEnable(int on);
int networkGetFtpState();

/// ARP listing is not offered: always -1.
int networkGetNextArp(int index, Network::ArpInfo* info);

/// IPv4 address, mask and management VLAN.
int networkSetIp(unsigned int ipAddr, unsigned int netmask);
int networkSetVlan(unsigned int vlanId);
int networkSetDefVlanMode(unsigned int defVid, unsigned int defMode);
int networkGetNetworkInfo(rpcNetworkInfo* out);

/// Default gateway; 0 is none.
int networkSetGateway(unsigned int gateway);
int networkGetGateway(unsigned int* gateway);

/// Settings of the web server one by one, not supported: always -1.
int networkSetHttpSPort(unsigned int port);
int networkSetHttpSProto(Network::SProtocol protocol);
int networkHttpSServerEnable(bool on);
int networkHttpServerEnable(int on);
int networkGetHttpInfo(Network::HttpInfo* info);

/// Domain name. Output buffers hold 100 bytes; at most 99 characters come back of the 255 stored.
int networkSetDomainname(const char* domainname);
int networkSetIPv6Domainname(const char* domainname);
int networkGetDomainname(char* domainname);
int networkGetDomainnameWS(int* dnsSource, char* domainname);
int networkGetIPv6Domainname(int* dnsSource, char* domainname);

/// Host name, not supported: always -1.
int networkSetHostname(const char* hostname);
int networkGetHostname(char* hostname);

/// Clock and time zone. The time buffer holds 30 bytes, the name buffer 200. A null text for the
/// clock throws std::logic_error.
int networkSetTimeInfo(const char* text);
int networkGetTimeInfo(char* time);
int networkSetTimezoneOffset(int offset);
int networkSetTimezoneName(const char* name);
int networkGetTimezoneInfo(int* offset, char* name);

/// Name servers. An IPv6 server text of more than 255 characters ends the process; buffers for one
/// hold 99 bytes.
int networkSetDnsServers(unsigned int primary, unsigned int secondary);
int networkSetIPv6DnsServers(const char* primary, const char* secondary);
int networkDeleteDnsServers();
int networkDeleteIPv6DnsServers();
int networkGetDnsServers(unsigned int* primary, unsigned int* secondary);
int networkGetDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary);
int networkGetIPv6DnsServers(int* dnsSource, char* primary, char* secondary);

/// DHCP client.
int networkSetProtocol(int dhcp);

/// DHCPv6 client.
int networkGetIPv6Proto(bool* state);
int networkSetIPv6Proto(int on);

/// DHCP client options.
int networkSetVendor(int dhcp, int vendor);
int networkSetOption82(int dhcp, int option82);

/// Remote-access rules; positions are 1-based when a rule is added or removed, 0-based when they
/// are listed.
int networkAddRARule(unsigned int ipAddr, unsigned int netmask, int permit, unsigned int index);
int networkRemoveRARule(unsigned int index);
int networkIterateRules(unsigned int index, Network::RemoteAccessRule* rule);

/// Software inventory. Text buffers hold 100 bytes.
int networkGetSWData(char* product, char* buildDirectory, char* buildTime, char* upgradeProduct,
                     char* packageRelease, char* osRelease, char* fileSystem, char* bootLoader,
                     char* recoveryFileSystem);
int networkGetVersionLineApl(char* line, int* index);
int networkGetVersionLinePlat(char* line, int* index);
int networkGetPackageData(char* name, char* version);

/// Telnet and SSH servers.
int networkGetTelnetConfig(bool* on);
int networkTelnetEnable(int on);
int networkGetSshConfig(bool* on);
int networkSshEnable(int on);

/// SNTP client.
int networkGetSntpConfig(rpcSntpConfig* config);
int networkGetSntpConfigWS(int* source, rpcSntpConfig* config);
int networkGetSntpConfigWSHost(int* source, rpcSntpConfigHost* config);
int networkUpdateSntpConfig(rpcSntpConfig* config);
int networkUpdateSntpConfigHost(rpcSntpConfigHost* config);
int networkGetSntpInfo(rpcSntpInfo* info);
int networkGetSntpInfoWS(int* source, rpcSntpInfo* info);
int networkGetSntpInfoWSHost(int* source, rpcSntpInfoHost* info);

/// SNMP agent. A flag tells whether to add or to delete.
int networkSnmptrapAdd(const char* community, unsigned int ipAddress, int add);
int networkGetSnmptrapConfig(rpcSnmpTrapConfig* config);
int networkSnmptrapChange(const char* community, unsigned int oldAddress, unsigned int newAddress);
int networkSnmptrapPort(unsigned int port);
int networkSnmpCommunityAdd(const char* name, rpcSnmpCommunityAccess access, int add);
int networkSnmpCommunityChange(const char* name, rpcSnmpCommunityAccess access);
int networkSnmpCommunityGet(rpcSnmpCommunityConfig* config);
int networkSnmpSystemChange(const char* text, rpcSnmpSystemSelector selector);
int networkSnmpSystemGet(rpcSnmpSystemConfig* config);

/// Limit on terminal sessions; 0 sets the default.
int networkGetPtyMaxSess(unsigned int* maxSessions, unsigned int* value);
int networkSetPtyMaxSess(unsigned int maxSessions);

/// Time zone and daylight-saving rule of the SNTP client.
int networkSetSntpTimezoneDstStart(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                   int time);
int networkSetSntpTimezoneDstEnd(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                 int time);
int networkSetSntpTimezoneDstOffset(int dstOffset);
int networkSetSntpTimezone(int offset, const char* linuxName);
int networkGetSntpTimezoneInfo(rpcNetworkSntpTimezone* info);

/// IPv6 address and gateway. The list buffer holds 2000 bytes, the gateway buffer 100.
int networkGetIpv6Addr(char* addresses, char* gateway);
int networkSetIpv6Addr(char* address, unsigned int prefixLength);
int networkSetIpv6Gw(char* gateway);
int networkRemoveIpv6Addr();
int networkRemoveIpv6Gw();

/// Management interface of the integrated ONT; address 0 switches it off. No lock is taken.
int networkSetOntMng(unsigned int ipAddr, unsigned int netmask, unsigned int vlanId);
int networkGetOntMng(unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId);

/// The web server set.
int networkHttpServerSet(int on);
int networkHttpGet(bool* on);
}
#pragma GCC visibility pop
