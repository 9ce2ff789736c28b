// Fakes of the exported functions of remote access, terminal and file-transfer services, web
// server, SNMP agent and software inventory.

#include "exported/ExportedCall.h"
#include "network/exports.h"

int networkFtpEnable(int on) { return ExportedCall("networkFtpEnable", on).end(); }

int networkGetFtpState() { return ExportedCall("networkGetFtpState").end(); }

int networkSetHttpSPort(unsigned int port) {
    return ExportedCall("networkSetHttpSPort", port).end();
}

int networkSetHttpSProto(Network::SProtocol protocol) {
    return ExportedCall("networkSetHttpSProto", protocol).end();
}

int networkHttpSServerEnable(bool on) { return ExportedCall("networkHttpSServerEnable", on).end(); }

int networkHttpServerEnable(int on) { return ExportedCall("networkHttpServerEnable", on).end(); }

int networkGetHttpInfo(Network::HttpInfo* info) {
    return ExportedCall("networkGetHttpInfo").fill(info).end();
}

int networkAddRARule(unsigned int ipAddr, unsigned int netmask, int permit, unsigned int index) {
    return ExportedCall("networkAddRARule", ipAddr, netmask, permit, index).end();
}

int networkRemoveRARule(unsigned int index) {
    return ExportedCall("networkRemoveRARule", index).end();
}

int networkIterateRules(unsigned int index, Network::RemoteAccessRule* rule) {
    return ExportedCall("networkIterateRules", index).fill(rule).end();
}

int networkGetSWData(char* product, char* buildDirectory, char* buildTime, char* upgradeProduct,
                     char* packageRelease, char* osRelease, char* fileSystem, char* bootLoader,
                     char* recoveryFileSystem) {
    return ExportedCall("networkGetSWData")
        .fill(OutputText{product, 100}, OutputText{buildDirectory, 100}, OutputText{buildTime, 100},
              OutputText{upgradeProduct, 100}, OutputText{packageRelease, 100},
              OutputText{osRelease, 100}, OutputText{fileSystem, 100}, OutputText{bootLoader, 100},
              OutputText{recoveryFileSystem, 100})
        .end();
}

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

int networkGetPackageData(char* name, char* version) {
    return ExportedCall("networkGetPackageData")
        .fill(OutputText{name, 100}, OutputText{version, 100})
        .end();
}

int networkGetTelnetConfig(bool* on) {
    return ExportedCall("networkGetTelnetConfig").fill(on).end();
}

int networkTelnetEnable(int on) { return ExportedCall("networkTelnetEnable", on).end(); }

int networkGetSshConfig(bool* on) { return ExportedCall("networkGetSshConfig").fill(on).end(); }

int networkSshEnable(int on) { return ExportedCall("networkSshEnable", on).end(); }

int networkSnmptrapAdd(const char* community, unsigned int ipAddress, int add) {
    return ExportedCall("networkSnmptrapAdd", community, ipAddress, add).end();
}

int networkGetSnmptrapConfig(rpcSnmpTrapConfig* config) {
    return ExportedCall("networkGetSnmptrapConfig").fill(config).end();
}

int networkSnmptrapChange(const char* community, unsigned int oldAddress, unsigned int newAddress) {
    return ExportedCall("networkSnmptrapChange", community, oldAddress, newAddress).end();
}

int networkSnmptrapPort(unsigned int port) {
    return ExportedCall("networkSnmptrapPort", port).end();
}

int networkSnmpCommunityAdd(const char* name, rpcSnmpCommunityAccess access, int add) {
    return ExportedCall("networkSnmpCommunityAdd", name, access, add).end();
}

int networkSnmpCommunityChange(const char* name, rpcSnmpCommunityAccess access) {
    return ExportedCall("networkSnmpCommunityChange", name, access).end();
}

int networkSnmpCommunityGet(rpcSnmpCommunityConfig* config) {
    return ExportedCall("networkSnmpCommunityGet").fill(config).end();
}

int networkSnmpSystemChange(const char* text, rpcSnmpSystemSelector selector) {
    return ExportedCall("networkSnmpSystemChange", text, selector).end();
}

int networkSnmpSystemGet(rpcSnmpSystemConfig* config) {
    return ExportedCall("networkSnmpSystemGet").fill(config).end();
}

int networkGetPtyMaxSess(unsigned int* maxSessions, unsigned int* value) {
    return ExportedCall("networkGetPtyMaxSess").fill(maxSessions, value).end();
}

int networkSetPtyMaxSess(unsigned int maxSessions) {
    return ExportedCall("networkSetPtyMaxSess", maxSessions).end();
}

int networkHttpServerSet(int on) { return ExportedCall("networkHttpServerSet", on).end(); }

int networkHttpGet(bool* on) { return ExportedCall("networkHttpGet").fill(on).end(); }
