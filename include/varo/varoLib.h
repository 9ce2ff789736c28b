#pragma once

#include "varo/records.h"
#include "varo/sntpRecords.h"

/// The network-configuration library. Every call returns 0 on success and another value on failure.
/// Records are owned by the caller, and no pointer is kept after a call. Calls may be made from any
/// thread, at the same time.
///
/// Get reads the configuration in force, Update stores and applies a whole record, Def fills a
/// record with the factory values and changes nothing.
///
/// A configuration source tells whose values a record holds: 2 the management front ends ("CLI"), 1
/// the DHCP client. On a read through `int* source`, 0 lets the library choose; the library stores
/// the source of the values that it returned.

extern "C" {

// The library itself.
int varoLibInit();
void varoLibDestroy();
int varoGetInternalConfig(varoLib_s_internalConfig* config);
/// The severity is handed over twice: in the record, and by itself to take effect at once.
int varoUpdateInternalConfig(varoLib_s_internalConfig* config, std::int16_t severity);

// The board.
/// Position of the board in the shelf.
int varoGetMyBoardPos(std::uint32_t* position);

// IPv4 on the management interface.
int varoGetDhcp(varoLib_s_dhcp* dhcp);
int varoUpdateDhcp(varoLib_s_dhcp* dhcp);
/// Takes back the alarm that the DHCP server does not respond.
int varoDhcpRetreatAlrServNotResponding();
/// Adds the address to the interface named in the record; host byte order.
int varoAttachIpToIntf(varoLib_s_interface* interface);
/// Removes it; host byte order.
int varoDettachIpFromIntf(varoLib_s_interface* interface);
/// Fills address and mask of the interface named in the record, in network byte order. Fails when
/// there is no such interface; one without an address reads as 0.
int varoGetInterface(varoLib_s_interface* interface);
/// Stores the 6 bytes of the interface's MAC address.
int varoGetIfcMAC(const char* name, unsigned char* mac);
int varoAddRoute(varoLib_s_route* route);
int varoDeleteRoute(varoLib_s_route* route);
/// Fills the gateway of the route to the record's destination; fails when there is none.
int varoGetRouteByDst(varoLib_s_route* route);
/// Sends a signal, by its POSIX number, to the auto-configuration client.
int varoSendSigToAcs(int signal);

// IPv6 on the management interface.
int varoGetIpv6(varoLib_s_ipv6* ipv6);
int varoSetIpv6Addr(varoLib_s_ipv6* ipv6);
int varoSetIpv6Gw(varoLib_s_ipv6* ipv6);
int varoRemoveIpv6Addr();
int varoRemoveIpv6Gw();
int varoGetDhcp6(varoLib_s_dhcp6* dhcp);
int varoUpdateDhcp6(varoLib_s_dhcp6* dhcp);

// Resolver.
int varoGetDnsWS(int* source, varoLib_s_dns* dns);
int varoUpdateDnsWS(int source, varoLib_s_dns* dns);
int varoDefDnsWS(int source, varoLib_s_dns* dns);
int varoGetDns6(int* source, varoLib_s_dns6* dns);
int varoUpdateDns6(int source, varoLib_s_dns6* dns);
int varoDefDns6(int source, varoLib_s_dns6* dns);

// Terminal and file-transfer services.
int varoGetTelnetSrv(varoLib_s_telnetSrv* server);
int varoUpdateTelnetSrv(varoLib_s_telnetSrv* server);
int varoDefTelnetSrv(varoLib_s_telnetSrv* server);
int varoGetSshSrv(varoLib_s_sshSrv* server);
int varoUpdateSshSrv(varoLib_s_sshSrv* server);
int varoDefSshSrv(varoLib_s_sshSrv* server);
int varoGetFtpSrv(varoLib_s_ftpSrv* server);
int varoUpdateFtpSrv(varoLib_s_ftpSrv* server);
int varoDefFtpSrv(varoLib_s_ftpSrv* server);

// SNMP agent. Addresses in host byte order. Access: 1 read-only, 2 read-write. Selector: 1 contact,
// 2 location, 3 name. A trap manager is known by its address and community together, a community by
// its name. To add what is there already, or to change or delete what is not, fails.
int varoGetSubag(varoLib_s_subag* agent);
int varoUpdateSubag(varoLib_s_subag* agent);
int varoDefSubag(varoLib_s_subag* agent);
int varoAddSubag(const char* community, unsigned int ipAddress);
int varoDeleteSubag(const char* community, unsigned int ipAddress);
int varoChangeSubag(const char* oldCommunity, unsigned int oldAddress, const char* newCommunity,
                    unsigned int newAddress);
int varoChangePortSubag(unsigned int port);
int varoGetSnmpCommunity(varoLib_s_snmpCommunity* communities);
int varoUpdateSnmpCommunity(varoLib_s_snmpCommunity* communities);
int varoDefSnmpCommunity(varoLib_s_snmpCommunity* communities);
int varoAddSnmpCommunity(const char* name, int access);
/// Whatever its access is.
int varoDeleteSnmpCommunity(const char* name, int access);
int varoChangeSnmpCommunity(const char* name, int access);
int varoGetSnmpSystem(varoLib_s_snmpSystem* system);
int varoUpdateSnmpSystem(varoLib_s_snmpSystem* system);
int varoDefSnmpSystem(varoLib_s_snmpSystem* system);
int varoChangeSnmpSystem(const char* text, int selector);

// SNTP client. There is one configuration for each source, with servers by host texts. Records with
// IPv4 addresses are a view of it: they show the servers that are given by such an address, in
// their order as far as they fit, and leave the others out. To update through the view is to
// replace all servers. Address types are set by the library.
int varoGetNtpWS(int* source, rpcSntpConfig* config);
int varoUpdateNtpWS(int source, rpcSntpConfig* config);
int varoGetNtpHost(int* source, rpcSntpConfigHost* config);
int varoUpdateNtpHost(int source, rpcSntpConfigHost* config);
int varoDefNtpHost(int source, rpcSntpConfigHost* config);
int varoGetNtpStatsWS(int* source, rpcSntpInfo* info);
int varoGetNtpHostStats(int* source, rpcSntpInfoHost* info);

// Time zone.
int varoGetSntpTimeZone(varoLib_s_sntpTimeZone* zone);
int varoUpdateSntpTimeZone(varoLib_s_sntpTimeZone* zone);
/// Stores and applies the name of the zone only.
int varoUpdateSntpTimeZoneAlt(varoLib_s_sntpTimeZone* zone);

// Auto-configuration client.
int varoUpdateAcs(varoLib_s_acs* acs, int source);
int varoDefAcs(varoLib_s_acs* acs, int source);
}
