#pragma once

#include <control.h>
#include <network.h>

#include <cstring>
#include <string>
#include <vector>

namespace canned {

/// What the canned board was asked to do, by its command line.
struct Behaviour {
    bool refuse = false;             ///< every operation answers -1
    bool lone = false;               ///< serves neither of the board's programs
    std::string failHalfWay;         ///< the procedure that does a part of its work and answers -1
    std::string counters = "right";  ///< of the rules: "right", "wrong" (those of other rules),
                                     ///< "failed", or "none" (the procedure is not known)
    std::string vlans = "right";     ///< of the switch: "right", "stored" (a management VLAN is),
                                     ///< "outside" (the management port is in none), "failed", or
                                     ///< "none" (the procedure is not known)
    std::string components = "right";  ///< of the software: "right", "none", or "endless"
    std::string ntp = "synchronised";  ///< status of the client, or "unknown"
    std::string dieAfter;  ///< the procedure of the network program after whose answer it ends
};

inline rpcNetworkInfo initialInfo() {
    rpcNetworkInfo info{};
    info.ipAddress = 0xC000020A;  // 192.0.2.10
    info.netmask = 0xFFFFFF00;
    info.macAddress = {{2, 0, 0x5E, 0x10, 0, 0x0A}};
    info.mngVlanId = 1;
    info.defVid = 1;
    info.defVlanMode = rpcVlanNative;
    return info;
}

inline rpcSnmpCommunityConfig noCommunities() {
    rpcSnmpCommunityConfig config{};
    for (rpcSnmpCommunity& each : config.communities) {
        each.access = rpcSnmpCommunityNone;
    }
    return config;
}

/// What the canned board remembers, so that what was set can be read back.
struct State {
    rpcNetworkInfo info = initialInfo();
    unsigned gateway = 0xC00002FE;  // 192.0.2.254
    std::vector<rpcNetworkRemoteAccessRule> rules;
    std::string ipv6Address;  ///< set by hand, with its length; the link-local one is always there
    std::string ipv6Gateway;
    bool dhcp6 = true;
    rpcNetworkDnsInfoWS dns{2, 0, 0};
    rpcNetworkDomainWS domain{2, {}};
    rpcNetworkIPv6DnsInfo dns6{1, {}, {}};
    rpcNetworkIPv6Domain domain6{1, {}};
    rpcSntpConfig sntp{};
    rpcNetworkInfo ont{};
    bool telnet = false;
    bool ssh = true;
    bool ftp = false;
    rpcPtyConfig limits{5, 10};
    rpcNetworkSntpTimezone zone{};
    std::string time = "12:00:00 01/07/2026";
    rpcSntpConfigHost ntp{};
    rpcSnmpSystemConfig snmpSystem{};
    rpcSnmpCommunityConfig snmpCommunities = noCommunities();
    rpcSnmpTrapConfig snmpTraps{.managers = {}, .port = 162};
    std::string shelfId = "1";
    bool profileMode = false;
    bool clearConfig = false;
    bool webServer = true;  ///< the feature
    bool webSet = false;    ///< whether the web server set is on
};

// Each fills the result of a procedure of the network program, from the state of the board; what
// has no answer of its own is zero. Answers false if it knows another group of procedures.

bool answerAddressing(rpcproc_t procedure, void* argument, void* result);
/// The client cannot be switched where it answers with a refusal, and as on the board nobody is
/// told.
bool answerIpv6(rpcproc_t procedure, void* argument, void* result);
bool answerResolver(rpcproc_t procedure, void* argument, void* result);
bool answerServices(rpcproc_t procedure, void* argument, void* result);
/// The SNMP agent and the SNTP client. What a full board refuses is refused; with `--ntp unknown`
/// there is no status.
bool answerSnmp(rpcproc_t procedure, void* argument, void* result);
/// The software inventory and the ONT's interface.
bool answerSoftware(rpcproc_t procedure, void* argument, void* result);
bool answerVlan(rpcproc_t procedure, void* argument, void* result);

/// Answers what the control program tells of the DHCP client.
void sendDhcp(SVCXPRT* transport);

/// Answers what the control program tells of the VLANs: 1 with ports 1 and 100, 10 and 20, the
/// latter with port 100.
void sendVlans(SVCXPRT* transport);

/// The dispatcher of the control program.
void dispatchControl(svc_req* request, SVCXPRT* transport);

/// The dispatcher of the port mapper, version 2, which knows the ports that are given.
void dispatchMapper(svc_req* request, SVCXPRT* transport);

/// What all dispatchers share.
struct Board {
    State state;
    Behaviour behaviour;
    unsigned short tcpPort = 0;  ///< that the mapper names; 0 registers nothing
    unsigned short udpPort = 0;
};
Board& board();

/// Writes a line that tells of a request to standard output, where the test reads it.
void tell(const std::string& line);

template <class T>
T& as(void* data) {
    return *static_cast<T*>(data);
}

/// Answers with the value.
template <class T>
bool give(void* result, const T& value) {
    as<T>(result) = value;
    return true;
}

/// Keeps the argument, which is a T on the wire.
template <class T, class Kept>
bool take(Kept& kept, void* argument) {
    kept = static_cast<Kept>(as<T>(argument));
    return true;
}

/// Fills the field of a record with the text.
template <std::size_t size>
void copy(char (&to)[size], const std::string& from) {
    std::memset(to, 0, size);
    from.copy(to, size - 1);
}

/// Answers -1, in a result that is a status or begins with one.
inline void refuse(void* result) {
    const int failed = -1;
    std::memcpy(result, &failed, sizeof failed);
}

template <class Filter>
xdrproc_t asFilter(Filter* filter) {
    return reinterpret_cast<xdrproc_t>(filter);
}

}  // namespace canned
