#include "network/exports.h"

#include "network/networkInfoToWire.h"

#include <stdexcept>
#include <string>

// Operations are called with their class's name, which binds the call statically: an exported
// function means this library's operation, whatever the object's virtual table says.

namespace {

Network& network() { return singleton<Network>::instance(); }

/// A null text raises the error of string construction, in fixed words: the standard library's own
/// differ between its versions.
std::string toString(const char* text) {
    if (text == nullptr) {
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
    return text;
}

}  // namespace

int networkFtpEnable(int on) { return network().Network::enableFtp(on != 0); }

int networkGetFtpState() { return network().Network::getFtpState(); }

int networkGetNextArp(int index, Network::ArpInfo* info) {
    return network().Network::getNextArp(index, info);
}

int networkSetIp(unsigned int ipAddr, unsigned int netmask) {
    return network().Network::setIp(ipAddr, netmask);
}

int networkSetVlan(unsigned int vlanId) { return network().Network::setVlan(vlanId); }

int networkSetDefVlanMode(unsigned int defVid, unsigned int defMode) {
    return network().Network::setDefVlanMode(defVid, defMode);
}

int networkGetNetworkInfo(rpcNetworkInfo* out) {
    // One record for all callers: the shared lock inside covers the filling, not the copy below.
    static Network::NetworkInfo info;
    const int status = network().Network::getNetworkInfo(&info);
    if (status != 0) {
        return status;
    }
    toWire(info, *out);
    return 0;
}

int networkSetGateway(unsigned int gateway) { return network().Network::setGateway(gateway); }

int networkGetGateway(unsigned int* gateway) { return network().Network::getGateway(gateway); }

int networkSetHttpSPort(unsigned int port) { return network().Network::setHttpSPort(port); }

int networkSetHttpSProto(Network::SProtocol protocol) {
    return network().Network::setHttpSProto(protocol);
}

int networkHttpSServerEnable(bool on) { return network().Network::enableHttpSServer(on); }

int networkHttpServerEnable(int on) { return network().Network::enableHttpServer(on != 0); }

int networkGetHttpInfo(Network::HttpInfo* info) { return network().Network::getHttpInfo(info); }

int networkSetDomainname(const char* domainname) {
    return network().Network::setDomainname(domainname);
}

int networkSetIPv6Domainname(const char* domainname) {
    return network().Network::setIPv6Domainname(domainname);
}

int networkGetDomainname(char* domainname) { return network().Network::getDomainname(domainname); }

int networkGetDomainnameWS(int* dnsSource, char* domainname) {
    return network().Network::getDomainnameWS(dnsSource, domainname);
}

int networkGetIPv6Domainname(int* dnsSource, char* domainname) {
    return network().Network::getIPv6Domainname(dnsSource, domainname);
}

int networkSetHostname(const char* hostname) { return network().Network::setHostname(hostname); }

int networkGetHostname(char* hostname) { return network().Network::getHostname(hostname); }

int networkSetTimeInfo(const char* text) { return network().Network::setTimeInfo(toString(text)); }

int networkGetTimeInfo(char* time) { return network().Network::getTimeInfo(time); }

int networkSetTimezoneOffset(int offset) { return network().Network::setTimezoneOffset(offset); }

int networkSetTimezoneName(const char* name) { return network().Network::setTimezoneName(name); }

int networkGetTimezoneInfo(int* offset, char* name) {
    return network().Network::getTimezoneInfo(offset, name);
}

int networkSetDnsServers(unsigned int primary, unsigned int secondary) {
    return network().Network::setDnsServers(primary, secondary);
}

int networkSetIPv6DnsServers(const char* primary, const char* secondary) {
    return network().Network::setIPv6DnsServers(primary, secondary);
}

int networkDeleteDnsServers() { return network().Network::deleteDnsServers(); }

int networkDeleteIPv6DnsServers() { return network().Network::deleteIPv6DnsServers(); }

int networkGetDnsServers(unsigned int* primary, unsigned int* secondary) {
    return network().Network::getDnsServers(primary, secondary);
}

int networkGetDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary) {
    return network().Network::getDnsServersWS(dnsSource, primary, secondary);
}

int networkSetProtocol(int dhcp) { return network().Network::setProtocol(dhcp != 0); }

int networkGetIPv6DnsServers(int* dnsSource, char* primary, char* secondary) {
    return network().Network::getIPv6DnsServers(dnsSource, primary, secondary);
}

int networkGetIPv6Proto(bool* state) { return network().Network::getIPv6Proto(state); }

int networkSetIPv6Proto(int on) { return network().Network::setIPv6Proto(on != 0); }

int networkSetVendor(int dhcp, int vendor) {
    return network().Network::setVendor(dhcp != 0, vendor != 0);
}

int networkSetOption82(int dhcp, int option82) {
    return network().Network::setOption82(dhcp != 0, option82 != 0);
}

int networkAddRARule(unsigned int ipAddr, unsigned int netmask, int permit, unsigned int index) {
    return network().Network::addRARule(ipAddr, netmask, permit != 0, index);
}

int networkRemoveRARule(unsigned int index) { return network().Network::removeRARule(index); }

int networkIterateRules(unsigned int index, Network::RemoteAccessRule* rule) {
    return network().Network::iterateRules(index, rule);
}

int networkGetSWData(char* product, char* buildDirectory, char* buildTime, char* upgradeProduct,
                     char* packageRelease, char* osRelease, char* fileSystem, char* bootLoader,
                     char* recoveryFileSystem) {
    return network().Network::getSWData(product, buildDirectory, buildTime, upgradeProduct,
                                        packageRelease, osRelease, fileSystem, bootLoader,
                                        recoveryFileSystem);
}

int networkGetVersionLineApl(char* line, int* index) {
    return network().Network::getVerisonLineApl(line, index);
}

int networkGetVersionLinePlat(char* line, int* index) {
    return network().Network::getVerisonLinePlat(line, index);
}

int networkGetPackageData(char* name, char* version) {
    return network().Network::getPackageData(name, version);
}

int networkGetTelnetConfig(bool* on) { return network().Network::getTelnetConfig(on); }

int networkTelnetEnable(int on) { return network().Network::telnetEnable(on != 0); }

int networkGetSshConfig(bool* on) { return network().Network::getSshConfig(on); }

int networkSshEnable(int on) { return network().Network::sshEnable(on != 0); }

int networkGetSntpConfig(rpcSntpConfig* config) { return network().Network::getSntpConfig(config); }

int networkGetSntpConfigWS(int* source, rpcSntpConfig* config) {
    return network().Network::getSntpConfigWS(source, config);
}

int networkGetSntpConfigWSHost(int* source, rpcSntpConfigHost* config) {
    return network().Network::getSntpConfigWSHost(source, config);
}

int networkUpdateSntpConfig(rpcSntpConfig* config) {
    return network().Network::updateSntpConfig(config);
}

int networkUpdateSntpConfigHost(rpcSntpConfigHost* config) {
    return network().Network::updateSntpConfigHost(config);
}

int networkGetSntpInfo(rpcSntpInfo* info) { return network().Network::getSntpInfo(info); }

int networkGetSntpInfoWS(int* source, rpcSntpInfo* info) {
    return network().Network::getSntpInfoWS(source, info);
}

int networkGetSntpInfoWSHost(int* source, rpcSntpInfoHost* info) {
    return network().Network::getSntpInfoWSHost(source, info);
}

int networkSnmptrapAdd(const char* community, unsigned int ipAddress, int add) {
    return network().Network::snmptrapAdd(community, ipAddress, add != 0);
}

int networkGetSnmptrapConfig(rpcSnmpTrapConfig* config) {
    return network().Network::getSnmptrapConfig(config);
}

int networkSnmptrapChange(const char* community, unsigned int oldAddress, unsigned int newAddress) {
    return network().Network::snmptrapChange(community, oldAddress, newAddress);
}

int networkSnmptrapPort(unsigned int port) { return network().Network::snmptrapPort(port); }

int networkSnmpCommunityAdd(const char* name, rpcSnmpCommunityAccess access, int add) {
    return network().Network::snmpCommunityAdd(name, access, add != 0);
}

int networkSnmpCommunityChange(const char* name, rpcSnmpCommunityAccess access) {
    return network().Network::snmpCommunityChange(name, access);
}

int networkSnmpCommunityGet(rpcSnmpCommunityConfig* config) {
    return network().Network::snmpCommunityGet(config);
}

int networkSnmpSystemChange(const char* text, rpcSnmpSystemSelector selector) {
    return network().Network::snmpSystemChange(text, selector);
}

int networkSnmpSystemGet(rpcSnmpSystemConfig* config) {
    return network().Network::snmpSystemGet(config);
}

int networkGetPtyMaxSess(unsigned int* maxSessions, unsigned int* value) {
    return network().Network::ptyGetMaxSess(maxSessions, value);
}

int networkSetPtyMaxSess(unsigned int maxSessions) {
    return network().Network::ptySetMaxSess(maxSessions);
}

int networkSetSntpTimezoneDstStart(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                   int time) {
    return network().Network::setSntpTimezoneDstStart(month, week, dayInWeek, time);
}

int networkSetSntpTimezoneDstEnd(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                 int time) {
    return network().Network::setSntpTimezoneDstEnd(month, week, dayInWeek, time);
}

int networkSetSntpTimezoneDstOffset(int dstOffset) {
    return network().Network::setSntpTimezoneDstOffset(dstOffset);
}

int networkSetSntpTimezone(int offset, const char* linuxName) {
    return network().Network::setSntpTimezone(offset, linuxName);
}

int networkGetSntpTimezoneInfo(rpcNetworkSntpTimezone* info) {
    return network().Network::getSntpTimezoneInfo(info);
}

int networkGetIpv6Addr(char* addresses, char* gateway) {
    return network().Network::getIpv6Addr(addresses, gateway);
}

int networkSetIpv6Addr(char* address, unsigned int prefixLength) {
    return network().Network::setIpv6Addr(address, prefixLength);
}

int networkSetIpv6Gw(char* gateway) { return network().Network::setIpv6Gw(gateway); }

int networkRemoveIpv6Addr() { return network().Network::removeIpv6Addr(); }

int networkRemoveIpv6Gw() { return network().Network::removeIpv6Gw(); }

int networkSetOntMng(unsigned int ipAddr, unsigned int netmask, unsigned int vlanId) {
    return network().Network::setOntMng(ipAddr, netmask, vlanId);
}

int networkGetOntMng(unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId) {
    return network().Network::getOntMng(ipAddr, netmask, vlanId);
}

int networkHttpServerSet(int on) { return network().Network::networkHttpServerSet(on != 0); }

int networkHttpGet(bool* on) { return network().Network::networkHttpGet(*on); }
