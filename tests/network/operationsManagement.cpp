// Rows of the servers, the SNMP agent, the clock and its client.

#include "network/exports.h"
#include "network/operations.h"

namespace {

/// With a time server of each kind.
void withHosts(fake::Platform&) {
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
        Operation(EXPORTED(networkTelnetEnable, 1),
                  "exclusiveLock varoDefTelnetSrv=0 varoUpdateTelnetSrv ~"),
        Operation(EXPORTED(networkGetTelnetConfig, &buffers.flag), "sharedLock varoGetTelnetSrv ~"),
        Operation(EXPORTED(networkSshEnable, 1),
                  "exclusiveLock varoDefSshSrv=0 varoUpdateSshSrv ~"),
        Operation(EXPORTED(networkGetSshConfig, &buffers.flag), "sharedLock varoGetSshSrv ~"),
        Operation(EXPORTED(networkSetPtyMaxSess, 7),
                  "exclusiveLock varoGetTelnetSrv varoUpdateTelnetSrv ~"),
        Operation(EXPORTED(networkSetPtyMaxSess, 0),
                  "exclusiveLock varoGetTelnetSrv CliConfig::settings_t? varoUpdateTelnetSrv ~")
            .as("ToTheFactoryValue"),
        Operation(EXPORTED(networkGetPtyMaxSess, &buffers.numbers[0], &buffers.numbers[1]),
                  "sharedLock varoGetTelnetSrv ~"),
        // FTP hands on the library's own codes.
        Operation(EXPORTED(networkFtpEnable, 1), "exclusiveLock varoUpdateFtpSrv=42 ~"),
        Operation(EXPORTED(networkGetFtpState), "sharedLock varoGetFtpSrv=42 ~").returns(1),
    };
}

std::vector<Operation> snmp() {
    return {
        Operation(EXPORTED(networkSnmptrapAdd, "public", 1, 1), "sharedLock varoAddSubag ~"),
        Operation(EXPORTED(networkSnmptrapAdd, "public", 1, 0), "sharedLock varoDeleteSubag ~")
            .as("ToRemove")
            .on(withSnmpEntries),
        Operation(EXPORTED(networkSnmptrapChange, "public", 1, 2), "sharedLock varoChangeSubag ~")
            .on(withSnmpEntries),
        Operation(EXPORTED(networkSnmptrapPort, 1162), "sharedLock varoChangePortSubag ~"),
        Operation(EXPORTED(networkGetSnmptrapConfig, &buffers.trap), "sharedLock varoGetSubag ~"),
        Operation(EXPORTED(networkSnmpCommunityAdd, "public", rpcSnmpCommunityReadOnly, 1),
                  "sharedLock varoAddSnmpCommunity ~"),
        Operation(EXPORTED(networkSnmpCommunityAdd, "public", rpcSnmpCommunityReadOnly, 0),
                  "sharedLock varoDeleteSnmpCommunity ~")
            .as("ToRemove")
            .on(withSnmpEntries),
        Operation(EXPORTED(networkSnmpCommunityChange, "public", rpcSnmpCommunityReadWrite),
                  "sharedLock varoChangeSnmpCommunity ~")
            .on(withSnmpEntries),
        Operation(EXPORTED(networkSnmpCommunityGet, &buffers.communities),
                  "sharedLock varoGetSnmpCommunity ~"),
        Operation(
            EXPORTED(networkSnmpSystemChange, "text", rpcSnmpSystemName),
            "sharedLock varoChangeSnmpSystem dhcpra::setSystemName? pppoeia::setSystemName? ~"),
        Operation(EXPORTED(networkSnmpSystemChange, "text", rpcSnmpSystemContact),
                  "sharedLock varoChangeSnmpSystem dhcpra::setSystemContact? "
                  "pppoeia::setSystemContact? ~")
            .as("OfTheContact"),
        Operation(EXPORTED(networkSnmpSystemChange, "text", rpcSnmpSystemLocation),
                  "sharedLock varoChangeSnmpSystem dhcpra::setSystemLocation? "
                  "pppoeia::setSystemLocation? ~")
            .as("OfTheLocation"),
        Operation(EXPORTED(networkSnmpSystemGet, &buffers.system),
                  "sharedLock varoGetSnmpSystem ~"),
    };
}

std::vector<Operation> sntp() {
    return {
        Operation(EXPORTED(networkUpdateSntpConfig, &buffers.sntp), "sharedLock varoUpdateNtpWS ~"),
        Operation(EXPORTED(networkUpdateSntpConfigHost, &buffers.sntpHost),
                  "sharedLock varoUpdateNtpHost ~"),
        Operation(EXPORTED(networkUpdateSntpConfigHost, &buffers.sntpHost),
                  "sharedLock getIpAddrType=-5 checkIpHostname=-6 getIpAddrType=-5 "
                  "checkIpv6Addr=-6 getIpAddrType=-5 checkIpv4Addr=-6 varoUpdateNtpHost ~")
            .as("WithHosts")
            .on(withHosts),
        Operation(EXPORTED(networkGetSntpConfig, &buffers.sntp), "sharedLock varoGetNtpWS ~"),
        Operation(EXPORTED(networkGetSntpConfigWS, &buffers.number, &buffers.sntp),
                  "sharedLock varoGetNtpWS ~"),
        Operation(EXPORTED(networkGetSntpConfigWSHost, &buffers.number, &buffers.sntpHost),
                  "sharedLock varoGetNtpHost ~"),
        Operation(EXPORTED(networkGetSntpInfo, &buffers.sntpInfo),
                  "sharedLock varoGetNtpStatsWS ~"),
        Operation(EXPORTED(networkGetSntpInfoWS, &buffers.number, &buffers.sntpInfo),
                  "sharedLock varoGetNtpStatsWS ~"),
        Operation(EXPORTED(networkGetSntpInfoWSHost, &buffers.number, &buffers.sntpInfoHost),
                  "sharedLock varoGetNtpHostStats ~"),
    };
}

std::vector<Operation> clockAndZone() {
    return {
        Operation(EXPORTED(networkGetTimeInfo, buffers.texts[0]), "sharedLock ~"),
        Operation(EXPORTED_THAT_LOOKS(networkSetTimeInfo, "31/12/2024 23:59:30"),
                  "exclusiveLock settimeofday ~"),
        Operation(EXPORTED(networkSetTimezoneOffset, 60), "exclusiveLock ~").returns(-1),
        Operation(EXPORTED(networkSetTimezoneName, "UTC"),
                  "exclusiveLock varoGetSntpTimeZone=0 varoUpdateSntpTimeZoneAlt ~"),
        Operation(EXPORTED(networkGetTimezoneInfo, &buffers.number, buffers.texts[0]),
                  "sharedLock varoGetSntpTimeZone ~"),
        Operation(EXPORTED(networkSetSntpTimezone, 60, "UTC"),
                  "exclusiveLock varoGetSntpTimeZone=0 varoUpdateSntpTimeZone ~"),
        Operation(EXPORTED(networkSetSntpTimezoneDstStart, 1, 2, 3, 4),
                  "exclusiveLock varoGetSntpTimeZone=0 varoUpdateSntpTimeZone ~"),
        Operation(EXPORTED(networkSetSntpTimezoneDstEnd, 1, 2, 3, 4),
                  "exclusiveLock varoGetSntpTimeZone=0 varoUpdateSntpTimeZone ~"),
        Operation(EXPORTED(networkSetSntpTimezoneDstOffset, 30),
                  "exclusiveLock varoGetSntpTimeZone=0 varoUpdateSntpTimeZone ~"),
        Operation(EXPORTED(networkGetSntpTimezoneInfo, &buffers.zone),
                  "sharedLock varoGetSntpTimeZone ~"),
    };
}

}  // namespace

std::vector<Operation> managementOperations() {
    return joined({terminalServices(), snmp(), sntp(), clockAndZone()});
}
