#include "network/operations.h"

namespace {

/// Room for whatever the operations fill.
struct Buffers {
    int number;
    unsigned int numbers[2];
    bool flag;
    char text[200];
    rpcSntpConfig sntp;
    rpcSntpConfigHost sntpHost;
    rpcSntpInfo sntpInfo;
    rpcSntpInfoHost sntpInfoHost;
    rpcSnmpTrapConfig trap;
    rpcSnmpCommunityConfig communities;
    rpcSnmpSystemConfig system;
    rpcNetworkSntpTimezone zone;
} buffers{};

void asItIs(fake::Platform&) { buffers = {}; }

/// With a time server of each kind.
void withHosts(fake::Platform&) {
    buffers = {};
    buffers.sntpHost.servers[0] = {"ntp.example", 4, 1, 0};
    buffers.sntpHost.servers[1] = {"2001:db8::1", 4, 2, 0};
    buffers.sntpHost.servers[3] = {"192.0.2.1", 4, 3, 0};
}

/// With a manager and a community to change or remove.
void withSnmpEntries(fake::Platform& board) {
    board.snmp.managers.managers[0] = {1, "public"};
    board.snmp.communities.communities[0] = {"public", "ro"};
}

std::vector<Operation> terminalServices() {
    return {
        {"telnetEnable",
         asItIs,
         [](Network& network) { return network.telnetEnable(true); },
         {{"exclusiveLock", -1}, {"varoDefTelnetSrv", 0}, {"varoUpdateTelnetSrv", -1}}},
        {"getTelnetConfig",
         asItIs,
         [](Network& network) { return network.getTelnetConfig(&buffers.flag); },
         {{"sharedLock", -1}, {"varoGetTelnetSrv", -1}}},
        {"sshEnable",
         asItIs,
         [](Network& network) { return network.sshEnable(true); },
         {{"exclusiveLock", -1}, {"varoDefSshSrv", 0}, {"varoUpdateSshSrv", -1}}},
        {"getSshConfig",
         asItIs,
         [](Network& network) { return network.getSshConfig(&buffers.flag); },
         {{"sharedLock", -1}, {"varoGetSshSrv", -1}}},
        {"ptySetMaxSess",
         asItIs,
         [](Network& network) { return network.ptySetMaxSess(7); },
         {{"exclusiveLock", -1}, {"varoGetTelnetSrv", -1}, {"varoUpdateTelnetSrv", -1}}},
        {"ptyGetMaxSess",
         asItIs,
         [](Network& network) {
             return network.ptyGetMaxSess(&buffers.numbers[0], &buffers.numbers[1]);
         },
         {{"sharedLock", -1}, {"varoGetTelnetSrv", -1}}},
        // FTP hands on the library's own codes.
        {"enableFtp",
         asItIs,
         [](Network& network) { return network.enableFtp(true); },
         {{"exclusiveLock", -1}, {"varoUpdateFtpSrv", 42}}},
        {"getFtpState",
         asItIs,
         [](Network& network) { return network.getFtpState(); },
         {{"sharedLock", -1}, {"varoGetFtpSrv", 42}},
         1},
    };
}

std::vector<Operation> snmp() {
    return {
        {"snmptrapAdd",
         asItIs,
         [](Network& network) { return network.snmptrapAdd("public", 1, true); },
         {{"sharedLock", -1}, {"varoAddSubag", -1}}},
        {"snmptrapAddToRemove",
         withSnmpEntries,
         [](Network& network) { return network.snmptrapAdd("public", 1, false); },
         {{"sharedLock", -1}, {"varoDeleteSubag", -1}}},
        {"snmptrapChange",
         withSnmpEntries,
         [](Network& network) { return network.snmptrapChange("public", 1, 2); },
         {{"sharedLock", -1}, {"varoChangeSubag", -1}}},
        {"snmptrapPort",
         asItIs,
         [](Network& network) { return network.snmptrapPort(1162); },
         {{"sharedLock", -1}, {"varoChangePortSubag", -1}}},
        {"getSnmptrapConfig",
         asItIs,
         [](Network& network) { return network.getSnmptrapConfig(&buffers.trap); },
         {{"sharedLock", -1}, {"varoGetSubag", -1}}},
        {"snmpCommunityAdd",
         asItIs,
         [](Network& network) {
             return network.snmpCommunityAdd("public", rpcSnmpCommunityReadOnly, true);
         },
         {{"sharedLock", -1}, {"varoAddSnmpCommunity", -1}}},
        {"snmpCommunityAddToRemove",
         withSnmpEntries,
         [](Network& network) {
             return network.snmpCommunityAdd("public", rpcSnmpCommunityReadOnly, false);
         },
         {{"sharedLock", -1}, {"varoDeleteSnmpCommunity", -1}}},
        {"snmpCommunityChange",
         withSnmpEntries,
         [](Network& network) {
             return network.snmpCommunityChange("public", rpcSnmpCommunityReadWrite);
         },
         {{"sharedLock", -1}, {"varoChangeSnmpCommunity", -1}}},
        {"snmpCommunityGet",
         asItIs,
         [](Network& network) { return network.snmpCommunityGet(&buffers.communities); },
         {{"sharedLock", -1}, {"varoGetSnmpCommunity", -1}}},
        {"snmpSystemChange",
         asItIs,
         [](Network& network) { return network.snmpSystemChange("text", rpcSnmpSystemName); },
         {{"sharedLock", -1}, {"varoChangeSnmpSystem", -1}}},
        {"snmpSystemChangeOfTheContact",
         asItIs,
         [](Network& network) { return network.snmpSystemChange("text", rpcSnmpSystemContact); },
         {{"sharedLock", -1}, {"varoChangeSnmpSystem", -1}}},
        {"snmpSystemChangeOfTheLocation",
         asItIs,
         [](Network& network) { return network.snmpSystemChange("text", rpcSnmpSystemLocation); },
         {{"sharedLock", -1}, {"varoChangeSnmpSystem", -1}}},
        {"snmpSystemGet",
         asItIs,
         [](Network& network) { return network.snmpSystemGet(&buffers.system); },
         {{"sharedLock", -1}, {"varoGetSnmpSystem", -1}}},
    };
}

std::vector<Operation> sntp() {
    return {
        {"updateSntpConfig",
         asItIs,
         [](Network& network) { return network.updateSntpConfig(&buffers.sntp); },
         {{"sharedLock", -1}, {"varoUpdateNtpWS", -1}}},
        {"updateSntpConfigHost",
         asItIs,
         [](Network& network) { return network.updateSntpConfigHost(&buffers.sntpHost); },
         {{"sharedLock", -1}, {"varoUpdateNtpHost", -1}}},
        {"updateSntpConfigHostWithHosts",
         withHosts,
         [](Network& network) { return network.updateSntpConfigHost(&buffers.sntpHost); },
         {{"sharedLock", -1},
          {"getIpAddrType", -5},
          {"checkIpHostname", -6},
          {"getIpAddrType", -5},
          {"checkIpv6Addr", -6},
          {"getIpAddrType", -5},
          {"checkIpv4Addr", -6},
          {"varoUpdateNtpHost", -1}}},
        {"getSntpConfig",
         asItIs,
         [](Network& network) { return network.getSntpConfig(&buffers.sntp); },
         {{"sharedLock", -1}, {"varoGetNtpWS", -1}}},
        {"getSntpConfigWS",
         asItIs,
         [](Network& network) { return network.getSntpConfigWS(&buffers.number, &buffers.sntp); },
         {{"sharedLock", -1}, {"varoGetNtpWS", -1}}},
        {"getSntpConfigWSHost",
         asItIs,
         [](Network& network) {
             return network.getSntpConfigWSHost(&buffers.number, &buffers.sntpHost);
         },
         {{"sharedLock", -1}, {"varoGetNtpHost", -1}}},
        {"getSntpInfo",
         asItIs,
         [](Network& network) { return network.getSntpInfo(&buffers.sntpInfo); },
         {{"sharedLock", -1}, {"varoGetNtpStatsWS", -1}}},
        {"getSntpInfoWS",
         asItIs,
         [](Network& network) { return network.getSntpInfoWS(&buffers.number, &buffers.sntpInfo); },
         {{"sharedLock", -1}, {"varoGetNtpStatsWS", -1}}},
        {"getSntpInfoWSHost",
         asItIs,
         [](Network& network) {
             return network.getSntpInfoWSHost(&buffers.number, &buffers.sntpInfoHost);
         },
         {{"sharedLock", -1}, {"varoGetNtpHostStats", -1}}},
    };
}

std::vector<Operation> clockAndZone() {
    return {
        {"getTimeInfo",
         asItIs,
         [](Network& network) { return network.getTimeInfo(buffers.text); },
         {{"sharedLock", -1}}},
        {"setTimeInfo",
         asItIs,
         [](Network& network) { return network.setTimeInfo("31/12/2024 23:59:30"); },
         {{"exclusiveLock", -1}, {"settimeofday", -1}}},
        {"setTimezoneOffset",
         asItIs,
         [](Network& network) { return network.setTimezoneOffset(60); },
         {{"exclusiveLock", -1}},
         -1},
        {"setTimezoneName",
         asItIs,
         [](Network& network) { return network.setTimezoneName("UTC"); },
         {{"exclusiveLock", -1}, {"varoGetSntpTimeZone", 0}, {"varoUpdateSntpTimeZoneAlt", -1}}},
        {"getTimezoneInfo",
         asItIs,
         [](Network& network) { return network.getTimezoneInfo(&buffers.number, buffers.text); },
         {{"sharedLock", -1}, {"varoGetSntpTimeZone", -1}}},
        {"setSntpTimezone",
         asItIs,
         [](Network& network) { return network.setSntpTimezone(60, "UTC"); },
         {{"exclusiveLock", -1}, {"varoGetSntpTimeZone", 0}, {"varoUpdateSntpTimeZone", -1}}},
        {"setSntpTimezoneDstStart",
         asItIs,
         [](Network& network) { return network.setSntpTimezoneDstStart(1, 2, 3, 4); },
         {{"exclusiveLock", -1}, {"varoGetSntpTimeZone", 0}, {"varoUpdateSntpTimeZone", -1}}},
        {"setSntpTimezoneDstEnd",
         asItIs,
         [](Network& network) { return network.setSntpTimezoneDstEnd(1, 2, 3, 4); },
         {{"exclusiveLock", -1}, {"varoGetSntpTimeZone", 0}, {"varoUpdateSntpTimeZone", -1}}},
        {"setSntpTimezoneDstOffset",
         asItIs,
         [](Network& network) { return network.setSntpTimezoneDstOffset(30); },
         {{"exclusiveLock", -1}, {"varoGetSntpTimeZone", 0}, {"varoUpdateSntpTimeZone", -1}}},
        {"getSntpTimezoneInfo",
         asItIs,
         [](Network& network) { return network.getSntpTimezoneInfo(&buffers.zone); },
         {{"sharedLock", -1}, {"varoGetSntpTimeZone", -1}}},
    };
}

}  // namespace

std::vector<Operation> managementOperations() {
    std::vector<Operation> rows;
    for (const auto& group : {terminalServices(), snmp(), sntp(), clockAndZone()}) {
        rows.insert(rows.end(), group.begin(), group.end());
    }
    return rows;
}
