#pragma once

/// Configuration and status of the SNTP client (RFC 4330). These records are shared by the store,
/// which defines what their fields mean, and by the wire, which carries them as they are. IPv4
/// addresses are 32-bit values in host byte order; texts are zero-terminated. The records with
/// addresses hold 3 servers, those with host names 4.

/// A server given by its IPv4 address; address 0 marks an empty entry.
struct rpcSntpSrv {
    unsigned int ipAddress;
    int ntpVersion;  ///< protocol version, 3 or 4; 0 leaves the choice to the client
    int priority;    ///< 1 marks the preferred server, 0 any other
};

/// A server given by a host name or an address text; an empty text marks an empty entry.
struct rpcSntpSrvHost {
    char host[256];
    int ntpVersion;
    int priority;
    int addressType;  ///< 0 host name, 1 IPv4 address, 2 IPv6 address
};

struct rpcSntpConfig {
    int mode;  ///< 0 client off, 1 unicast client
    rpcSntpSrv servers[3];
};

struct rpcSntpConfigHost {
    int mode;
    rpcSntpSrvHost servers[4];
};

/// What the client knows of itself. Times are in microseconds.
struct rpcSntpClientInfo {
    int state;          ///< 0 off, 1 searching, 2 synchronised
    int mode;           ///< as in the configuration
    int leapIndicator;  ///< RFC 5905: 0 none, 1 and 2 a leap second ahead, 3 not synchronised
    int stratum;        ///< 0 unknown, 1 to 15
    int pollInterval;   ///< seconds
    int offset;
    unsigned int referenceAddress;
    int delay;
    int dispersion;
    char lastUpdate[24];  ///< local time of the last update, empty if there was none
};

/// The same, the reference named by its host text.
struct rpcSntpClientInfoHost {
    int state;
    int mode;
    int leapIndicator;
    int stratum;
    int pollInterval;
    int offset;
    char referenceHost[256];
    int delay;
    int dispersion;
    char lastUpdate[24];
};

struct rpcSntpClientUnicastInfo {
    int pollInterval;  ///< seconds between requests
    int timeout;       ///< seconds that an answer is waited for
    int retries;
};

/// What the client knows of one server. Times are in microseconds.
struct rpcSntpSrvInfo {
    int state;  ///< 0 unused, 1 unreachable, 2 reachable, 3 selected
    unsigned int ipAddress;
    int stratum;
    int reachability;  ///< outcome of the last 8 requests, the latest in bit 0
    int offset;
    int delay;
};

struct rpcSntpSrvInfoHost {
    int state;
    char host[256];
    int stratum;
    int reachability;
    int offset;
    int delay;
};

struct rpcSntpInfo {
    rpcSntpClientInfo client;
    rpcSntpClientUnicastInfo unicast;
    rpcSntpSrvInfo servers[3];
};

struct rpcSntpInfoHost {
    rpcSntpClientInfoHost client;
    rpcSntpClientUnicastInfo unicast;
    rpcSntpSrvInfoHost servers[4];
};
