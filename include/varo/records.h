#pragma once

#include <cstdint>

/// The records of the configuration library. Callers clear a record before they read into it. Texts
/// are zero-terminated. IPv4 addresses are 32-bit values, in the byte order that each record
/// states.

/// What the library keeps about itself.
struct varoLib_s_internalConfig {
    std::int16_t severity;  ///< system log threshold, 0 (emergency) to 7 (debug)
};

/// DHCP client of the management interface (RFC 2131).
struct varoLib_s_dhcp {
    std::uint32_t updateSelector;      ///< 2 in every update
    std::uint32_t dhcpEnabled;         ///< non-zero while the client is on
    std::uint32_t vendorClassEnabled;  ///< option 60 (RFC 2132) is sent
    char circuitId[150];               ///< option 82, sub-option 1 (RFC 3046)
    std::uint32_t option82Enabled;     ///< option 82 is sent
};

/// DHCPv6 client (RFC 8415).
struct varoLib_s_dhcp6 {
    std::uint32_t updateSelector;  ///< 2 in every update
    std::uint32_t dhcpEnabled;     ///< non-zero while the client is on
};

/// An IPv4 address on an interface. Addresses are in host byte order when one is attached or
/// detached, and in network byte order when varoGetInterface returns them.
struct varoLib_s_interface {
    std::uint32_t ipAddr;
    std::uint32_t netmask;
    std::uint32_t reserved;      ///< zero
    char name[16];               ///< Linux interface name (IFNAMSIZ)
    unsigned char reserved2[8];  ///< zero
};

/// An IPv4 route; addresses in host byte order.
struct varoLib_s_route {
    std::uint32_t destination;  ///< 0 is the default route
    std::uint32_t gateway;
    unsigned char reserved[8];  ///< zero
};

/// IPv6 addressing of the management interface, as text (RFC 4291, RFC 5952).
struct varoLib_s_ipv6 {
    char ipv6Addr[100];
    std::uint32_t prefixLen;
    char ipv6AddrList[2000];  ///< all addresses now on the interface
    char ipv6Gw[100];
};

/// IPv4 resolver settings. The servers are carried unchanged in the byte order of the callers.
struct varoLib_s_dns {
    char domain[256];
    std::uint32_t ip_pri;
    std::uint32_t ip_sec;  ///< 0 is none
};

/// IPv6 resolver settings; the servers as address texts.
struct varoLib_s_dns6 {
    char domain[256];
    char ipv6_pri[256];
    char ipv6_sec[256];
};

struct varoLib_s_telnetSrv {
    int enabled;
    unsigned int maxSessions;  ///< limit on concurrent terminal sessions
    unsigned int idleTimeout;  ///< minutes until an idle session is closed; 0 is never
};

struct varoLib_s_sshSrv {
    int enabled;
    unsigned int port;  ///< TCP port
};

struct varoLib_s_ftpSrv {
    int state;  ///< 1 on, 0 off
};

/// The SNMP agent's trap managers; addresses in host byte order.
struct varoLib_s_subag {
    std::int32_t port;  ///< UDP port of the managers
    struct {
        std::uint32_t ipAddress;  ///< 0 marks an empty entry
        char community[32];
    } managers[10];
};

struct varoLib_s_snmpCommunity {
    struct {
        char name[30];
        char access[4];  ///< "ro", "rw", or empty for an empty entry
    } communities[6];
};

/// System group of the SNMP agent (RFC 3418).
struct varoLib_s_snmpSystem {
    char contact[32];
    char location[32];
    char name[32];
};

/// Time zone and daylight-saving rule.
struct varoLib_s_sntpTimeZone {
    char name[200];
    std::int32_t offset;         ///< minutes east of UTC
    std::int32_t dstOffset;      ///< minutes added while daylight-saving time is in force
    std::int16_t dstSMonth;      ///< start: month, 1 to 12
    std::int16_t dstSWeek;       ///< week of that month, 1 to 5; 5 is the last
    std::int16_t dstSDayInWeek;  ///< 1 (Monday) to 7 (Sunday)
    std::int32_t dstSTime;       ///< hours times 100 plus minutes
    std::int16_t dstEMonth;      ///< end, likewise
    std::int16_t dstEWeek;
    std::int16_t dstEDayInWeek;
    std::int32_t dstETime;
    std::int32_t preset;  ///< set by the library: 1 while the zone is the factory one
};

/// Client of the auto-configuration server (Broadband Forum TR-069).
struct varoLib_s_acs {
    int enabled;
    int source;  ///< configuration source of the record
};
