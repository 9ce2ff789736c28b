// Fakes of the exported functions of remote access, terminal and file-transfer services, web
// server, SNMP agent and software inventory.

#include "exported/ExportedCall.h"
#include "network/exports.h"

FAKE(networkFtpEnable, (int on), on)
FAKE(networkGetFtpState, ())
FAKE(networkSetHttpSPort, (unsigned int port), port)
FAKE(networkSetHttpSProto, (Network::SProtocol protocol), protocol)
FAKE(networkHttpSServerEnable, (bool on), on)
FAKE(networkHttpServerEnable, (int on), on)
FILLING_FAKE(networkGetHttpInfo, (Network::HttpInfo * info), info)
FAKE(networkAddRARule, (unsigned int ipAddr, unsigned int netmask, int permit, unsigned int index),
     ipAddr, netmask, permit, index)
FAKE(networkRemoveRARule, (unsigned int index), index)

int networkIterateRules(unsigned int index, Network::RemoteAccessRule* rule) {
    return ExportedCall("networkIterateRules", index).fill(rule).end();
}

FILLING_FAKE(networkGetSWData,
             (char* product, char* buildDirectory, char* buildTime, char* upgradeProduct,
              char* packageRelease, char* osRelease, char* fileSystem, char* bootLoader,
              char* recoveryFileSystem),
             OutputText{product, 100}, OutputText{buildDirectory, 100}, OutputText{buildTime, 100},
             OutputText{upgradeProduct, 100}, OutputText{packageRelease, 100},
             OutputText{osRelease, 100}, OutputText{fileSystem, 100}, OutputText{bootLoader, 100},
             OutputText{recoveryFileSystem, 100})

int networkGetVersionLineApl(char* line, int* index) {
    return ExportedCall("networkGetVersionLineApl", *index)
        .fill(OutputText{line, 100}, index)
        .end();
}

int networkGetVersionLinePlat(char* line, int* index) {
    return ExportedCall("networkGetVersionLinePlat", *index)
        .fill(OutputText{line, 100}, index)
        .end();
}

FILLING_FAKE(networkGetPackageData, (char* name, char* version), OutputText{name, 100},
             OutputText{version, 100})
FILLING_FAKE(networkGetTelnetConfig, (bool* on), on)
FAKE(networkTelnetEnable, (int on), on)
FILLING_FAKE(networkGetSshConfig, (bool* on), on)
FAKE(networkSshEnable, (int on), on)
FAKE(networkSnmptrapAdd, (const char* community, unsigned int ipAddress, int add), community,
     ipAddress, add)
FILLING_FAKE(networkGetSnmptrapConfig, (rpcSnmpTrapConfig * config), config)
FAKE(networkSnmptrapChange,
     (const char* community, unsigned int oldAddress, unsigned int newAddress), community,
     oldAddress, newAddress)
FAKE(networkSnmptrapPort, (unsigned int port), port)
FAKE(networkSnmpCommunityAdd, (const char* name, rpcSnmpCommunityAccess access, int add), name,
     access, add)
FAKE(networkSnmpCommunityChange, (const char* name, rpcSnmpCommunityAccess access), name, access)
FILLING_FAKE(networkSnmpCommunityGet, (rpcSnmpCommunityConfig * config), config)
FAKE(networkSnmpSystemChange, (const char* text, rpcSnmpSystemSelector selector), text, selector)
FILLING_FAKE(networkSnmpSystemGet, (rpcSnmpSystemConfig * config), config)
FILLING_FAKE(networkGetPtyMaxSess, (unsigned int* maxSessions, unsigned int* value), maxSessions,
             value)
FAKE(networkSetPtyMaxSess, (unsigned int maxSessions), maxSessions)
FAKE(networkHttpServerSet, (int on), on)
FILLING_FAKE(networkHttpGet, (bool* on), on)
