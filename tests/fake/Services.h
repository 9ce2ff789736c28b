#pragma once

#include "varo/records.h"
#include "varo/sntpRecords.h"

#include <map>
#include <optional>

namespace fake {

/// Servers of the board, and its client of the auto-configuration server.
struct Services {
    varoLib_s_telnetSrv telnet{1, 5, 15};
    varoLib_s_sshSrv ssh{1, 2022};
    varoLib_s_ftpSrv ftp{0};
    std::map<int, varoLib_s_acs> acs;
};

/// Settings of the SNMP agent.
struct SnmpAgent {
    varoLib_s_subag managers{.port = 162, .managers = {}};
    varoLib_s_snmpCommunity communities{};
    varoLib_s_snmpSystem system{};
    /// Whether a text that is none of the three is accepted, and dropped.
    bool takesUnknownSelectors = false;
};

/// SNTP client and time zone.
struct TimeSettings {
    std::map<int, rpcSntpConfig> byAddress;
    std::map<int, rpcSntpConfigHost> byHost;
    rpcSntpInfo info{};
    rpcSntpInfoHost infoHost{};
    varoLib_s_sntpTimeZone zone{};
    /// What a failing read leaves behind in the caller's record.
    std::optional<varoLib_s_sntpTimeZone> zoneLeftByFailure;
};

/// What the library's factory calls fill in. No two values are alike.
struct FactorySettings {
    varoLib_s_telnetSrv telnet{1, 11, 12};
    varoLib_s_sshSrv ssh{1, 13};
    varoLib_s_ftpSrv ftp{1};
    varoLib_s_subag managers{.port = 14, .managers = {{0xc000020e, "factory trap"}}};
    varoLib_s_snmpCommunity communities{{{"factory", "ro"}}};
    varoLib_s_snmpSystem system{"factory contact", "factory location", "factory name"};
    rpcSntpConfigHost sntp{15, {{"factory.example", 16, 17, 18}}};
    varoLib_s_dns dns{"factory.example", 0xc0000213, 0xc0000214};
    varoLib_s_dns6 dns6{"factory6.example", "2001:db8::15", "2001:db8::16"};
    varoLib_s_acs acs{1, 23};
};

}  // namespace fake
