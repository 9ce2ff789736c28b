// Operations that are not built yet. Each takes the lock that it will work under and then fails, so
// that its callers get a defined answer.

#include "network/Network.h"

namespace {

constexpr auto notBuilt = [] { return -1; };

}  // namespace

int Network::applyDefaultSettings() { return notBuilt(); }

int Network::getSWData(char*, char*, char*, char*, char*, char*, char*, char*, char*) {
    return withSharedLock(notBuilt);
}
int Network::getVerisonLineApl(char*, int*) { return withSharedLock(notBuilt); }
int Network::getVerisonLinePlat(char*, int*) { return withSharedLock(notBuilt); }
int Network::getPackageData(char*, char*) { return withSharedLock(notBuilt); }

int Network::enableFtp(bool) { return withExclusiveLock(notBuilt); }
int Network::getFtpState() { return withSharedLock(notBuilt); }
int Network::getTelnetConfig(bool*) { return withSharedLock(notBuilt); }
int Network::telnetEnable(bool) { return withExclusiveLock(notBuilt); }
int Network::getSshConfig(bool*) { return withSharedLock(notBuilt); }
int Network::sshEnable(bool) { return withExclusiveLock(notBuilt); }
int Network::ptyGetMaxSess(unsigned int*, unsigned int*) { return withSharedLock(notBuilt); }
int Network::ptySetMaxSess(unsigned int) { return withExclusiveLock(notBuilt); }

int Network::setTimeInfo(const std::string&) { return withExclusiveLock(notBuilt); }
int Network::getTimeInfo(char*) { return withSharedLock(notBuilt); }
int Network::setTimezoneOffset(int) { return withExclusiveLock(notBuilt); }
int Network::setTimezoneName(const char*) { return withExclusiveLock(notBuilt); }
int Network::getTimezoneInfo(int*, char*) { return withSharedLock(notBuilt); }
int Network::setSntpTimezoneDstStart(unsigned int, unsigned int, unsigned int, int) {
    return withExclusiveLock(notBuilt);
}
int Network::setSntpTimezoneDstEnd(unsigned int, unsigned int, unsigned int, int) {
    return withExclusiveLock(notBuilt);
}
int Network::setSntpTimezoneDstOffset(int) { return withExclusiveLock(notBuilt); }
int Network::setSntpTimezone(int, const char*) { return withExclusiveLock(notBuilt); }
int Network::getSntpTimezoneInfo(rpcNetworkSntpTimezone*) { return withSharedLock(notBuilt); }

// The SNTP and SNMP setters deliberately take the shared lock: serialising them is varoLib's
// business.
int Network::updateSntpConfig(rpcSntpConfig*) { return withSharedLock(notBuilt); }
int Network::updateSntpConfigHost(rpcSntpConfigHost*) { return withSharedLock(notBuilt); }
int Network::getSntpConfig(rpcSntpConfig*) { return withSharedLock(notBuilt); }
int Network::getSntpConfigWS(int*, rpcSntpConfig*) { return withSharedLock(notBuilt); }
int Network::getSntpConfigWSHost(int*, rpcSntpConfigHost*) { return withSharedLock(notBuilt); }
int Network::getSntpInfo(rpcSntpInfo*) { return withSharedLock(notBuilt); }
int Network::getSntpInfoWS(int*, rpcSntpInfo*) { return withSharedLock(notBuilt); }
int Network::getSntpInfoWSHost(int*, rpcSntpInfoHost*) { return withSharedLock(notBuilt); }

int Network::snmptrapAdd(const char*, unsigned int, bool) { return withSharedLock(notBuilt); }
int Network::getSnmptrapConfig(rpcSnmpTrapConfig*) { return withSharedLock(notBuilt); }
int Network::snmptrapChange(const char*, unsigned int, unsigned int) {
    return withSharedLock(notBuilt);
}
int Network::snmptrapPort(unsigned int) { return withSharedLock(notBuilt); }
int Network::snmpCommunityAdd(const char*, rpcSnmpCommunityAccess, bool) {
    return withSharedLock(notBuilt);
}
int Network::snmpCommunityChange(const char*, rpcSnmpCommunityAccess) {
    return withSharedLock(notBuilt);
}
int Network::snmpCommunityGet(rpcSnmpCommunityConfig*) { return withSharedLock(notBuilt); }
int Network::snmpSystemChange(const char*, rpcSnmpSystemSelector) {
    return withSharedLock(notBuilt);
}
int Network::snmpSystemGet(rpcSnmpSystemConfig*) { return withSharedLock(notBuilt); }

int Network::setOntMng(unsigned int, unsigned int, unsigned int) { return notBuilt(); }
int Network::getOntMng(unsigned int*, unsigned int*, unsigned int*) { return notBuilt(); }
