#include "network/exportedFunctions.h"

#include "network/exports.h"

namespace {

/// Room for whatever the functions fill.
struct Buffers {
    char texts[9][2000];
    int number;
    unsigned int numbers[3];
    bool flag;
    Network::ArpInfo arpInfo;
    Network::HttpInfo httpInfo;
    Network::RemoteAccessRule remoteAccessRule;
    ::rpcNetworkInfo rpcNetworkInfo;
    ::rpcSntpConfig rpcSntpConfig;
    ::rpcSntpConfigHost rpcSntpConfigHost;
    ::rpcSntpInfo rpcSntpInfo;
    ::rpcSntpInfoHost rpcSntpInfoHost;
    ::rpcSnmpTrapConfig rpcSnmpTrapConfig;
    ::rpcSnmpCommunityConfig rpcSnmpCommunityConfig;
    ::rpcSnmpSystemConfig rpcSnmpSystemConfig;
    ::rpcNetworkSntpTimezone rpcNetworkSntpTimezone;
} buffers{};

}  // namespace

const std::vector<ExportedFunction>& exportedFunctions() {
    // clang-format off
    static const std::vector<ExportedFunction> functions = {
        {"networkFtpEnable", "exclusiveLock", [] { return networkFtpEnable(1); }, [] { return networkFtpEnable(1); }},
        {"networkGetFtpState", "sharedLock", [] { return networkGetFtpState(); }, [] { return networkGetFtpState(); }},
        {"networkGetNextArp", "", [] { return networkGetNextArp(1, nullptr); }, [] { return networkGetNextArp(1, &buffers.arpInfo); }},
        {"networkSetIp", "exclusiveLock", [] { return networkSetIp(1, 1); }, [] { return networkSetIp(1, 1); }},
        {"networkSetVlan", "exclusiveLock", [] { return networkSetVlan(1); }, [] { return networkSetVlan(1); }},
        {"networkSetDefVlanMode", "exclusiveLock", [] { return networkSetDefVlanMode(1, 1); }, [] { return networkSetDefVlanMode(1, 1); }},
        {"networkGetNetworkInfo", "sharedLock", [] { return networkGetNetworkInfo(nullptr); }, [] { return networkGetNetworkInfo(&buffers.rpcNetworkInfo); }},
        {"networkSetGateway", "exclusiveLock", [] { return networkSetGateway(1); }, [] { return networkSetGateway(1); }},
        {"networkGetGateway", "sharedLock", [] { return networkGetGateway(nullptr); }, [] { return networkGetGateway(&buffers.numbers[0]); }},
        {"networkSetHttpSPort", "", [] { return networkSetHttpSPort(1); }, [] { return networkSetHttpSPort(1); }},
        {"networkSetHttpSProto", "", [] { return networkSetHttpSProto(Network::sprotocolTls); }, [] { return networkSetHttpSProto(Network::sprotocolTls); }},
        {"networkHttpSServerEnable", "", [] { return networkHttpSServerEnable(true); }, [] { return networkHttpSServerEnable(true); }},
        {"networkHttpServerEnable", "", [] { return networkHttpServerEnable(1); }, [] { return networkHttpServerEnable(1); }},
        {"networkGetHttpInfo", "", [] { return networkGetHttpInfo(nullptr); }, [] { return networkGetHttpInfo(&buffers.httpInfo); }},
        {"networkSetDomainname", "exclusiveLock", [] { return networkSetDomainname(nullptr); }, [] { return networkSetDomainname("192.0.2.1"); }},
        {"networkSetIPv6Domainname", "exclusiveLock", [] { return networkSetIPv6Domainname(nullptr); }, [] { return networkSetIPv6Domainname("192.0.2.1"); }},
        {"networkGetDomainname", "sharedLock", [] { return networkGetDomainname(nullptr); }, [] { return networkGetDomainname(buffers.texts[0]); }},
        {"networkGetDomainnameWS", "sharedLock", [] { return networkGetDomainnameWS(nullptr, nullptr); }, [] { return networkGetDomainnameWS(&buffers.number, buffers.texts[0]); }},
        {"networkGetIPv6Domainname", "sharedLock", [] { return networkGetIPv6Domainname(nullptr, nullptr); }, [] { return networkGetIPv6Domainname(&buffers.number, buffers.texts[0]); }},
        {"networkSetHostname", "", [] { return networkSetHostname(nullptr); }, [] { return networkSetHostname("192.0.2.1"); }},
        {"networkGetHostname", "", [] { return networkGetHostname(nullptr); }, [] { return networkGetHostname(buffers.texts[0]); }},
        {"networkSetTimeInfo", "exclusiveLock", [] { return networkSetTimeInfo(""); }, [] { return networkSetTimeInfo("01/02/2024 03:04:05"); }},
        {"networkGetTimeInfo", "sharedLock", [] { return networkGetTimeInfo(nullptr); }, [] { return networkGetTimeInfo(buffers.texts[0]); }},
        {"networkSetTimezoneOffset", "exclusiveLock", [] { return networkSetTimezoneOffset(1); }, [] { return networkSetTimezoneOffset(1); }},
        {"networkSetTimezoneName", "exclusiveLock", [] { return networkSetTimezoneName(nullptr); }, [] { return networkSetTimezoneName("192.0.2.1"); }},
        {"networkGetTimezoneInfo", "sharedLock", [] { return networkGetTimezoneInfo(nullptr, nullptr); }, [] { return networkGetTimezoneInfo(&buffers.number, buffers.texts[0]); }},
        {"networkSetDnsServers", "exclusiveLock", [] { return networkSetDnsServers(1, 1); }, [] { return networkSetDnsServers(1, 1); }},
        {"networkSetIPv6DnsServers", "exclusiveLock", [] { return networkSetIPv6DnsServers(nullptr, nullptr); }, [] { return networkSetIPv6DnsServers("192.0.2.1", "192.0.2.1"); }},
        {"networkDeleteDnsServers", "exclusiveLock", [] { return networkDeleteDnsServers(); }, [] { return networkDeleteDnsServers(); }},
        {"networkDeleteIPv6DnsServers", "exclusiveLock", [] { return networkDeleteIPv6DnsServers(); }, [] { return networkDeleteIPv6DnsServers(); }},
        {"networkGetDnsServers", "sharedLock", [] { return networkGetDnsServers(nullptr, nullptr); }, [] { return networkGetDnsServers(&buffers.numbers[0], &buffers.numbers[1]); }},
        {"networkGetDnsServersWS", "sharedLock", [] { return networkGetDnsServersWS(nullptr, nullptr, nullptr); }, [] { return networkGetDnsServersWS(&buffers.number, &buffers.numbers[0], &buffers.numbers[1]); }},
        {"networkSetProtocol", "exclusiveLock", [] { return networkSetProtocol(1); }, [] { return networkSetProtocol(1); }},
        {"networkGetIPv6DnsServers", "sharedLock", [] { return networkGetIPv6DnsServers(nullptr, nullptr, nullptr); }, [] { return networkGetIPv6DnsServers(&buffers.number, buffers.texts[0], buffers.texts[1]); }},
        {"networkGetIPv6Proto", "sharedLock", [] { return networkGetIPv6Proto(nullptr); }, [] { return networkGetIPv6Proto(&buffers.flag); }},
        {"networkSetIPv6Proto", "sharedLock", [] { return networkSetIPv6Proto(1); }, [] { return networkSetIPv6Proto(1); }},
        {"networkSetVendor", "exclusiveLock", [] { return networkSetVendor(1, 1); }, [] { return networkSetVendor(1, 1); }},
        {"networkSetOption82", "exclusiveLock", [] { return networkSetOption82(1, 1); }, [] { return networkSetOption82(1, 1); }},
        {"networkAddRARule", "exclusiveLock", [] { return networkAddRARule(1, 1, 1, 1); }, [] { return networkAddRARule(1, 1, 1, 1); }},
        {"networkRemoveRARule", "exclusiveLock", [] { return networkRemoveRARule(1); }, [] { return networkRemoveRARule(1); }},
        {"networkIterateRules", "sharedLock", [] { return networkIterateRules(1, nullptr); }, [] { return networkIterateRules(1, &buffers.remoteAccessRule); }},
        {"networkGetSWData", "sharedLock", [] { return networkGetSWData(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }, [] { return networkGetSWData(buffers.texts[0], buffers.texts[1], buffers.texts[2], buffers.texts[3], buffers.texts[4], buffers.texts[5], buffers.texts[6], buffers.texts[7], buffers.texts[8]); }},
        {"networkGetVersionLineApl", "sharedLock", [] { return networkGetVersionLineApl(nullptr, nullptr); }, [] { return networkGetVersionLineApl(buffers.texts[0], &buffers.number); }},
        {"networkGetVersionLinePlat", "sharedLock", [] { return networkGetVersionLinePlat(nullptr, nullptr); }, [] { return networkGetVersionLinePlat(buffers.texts[0], &buffers.number); }},
        {"networkGetPackageData", "sharedLock", [] { return networkGetPackageData(nullptr, nullptr); }, [] { return networkGetPackageData(buffers.texts[0], buffers.texts[1]); }},
        {"networkGetTelnetConfig", "sharedLock", [] { return networkGetTelnetConfig(nullptr); }, [] { return networkGetTelnetConfig(&buffers.flag); }},
        {"networkTelnetEnable", "exclusiveLock", [] { return networkTelnetEnable(1); }, [] { return networkTelnetEnable(1); }},
        {"networkGetSshConfig", "sharedLock", [] { return networkGetSshConfig(nullptr); }, [] { return networkGetSshConfig(&buffers.flag); }},
        {"networkSshEnable", "exclusiveLock", [] { return networkSshEnable(1); }, [] { return networkSshEnable(1); }},
        {"networkGetSntpConfig", "sharedLock", [] { return networkGetSntpConfig(nullptr); }, [] { return networkGetSntpConfig(&buffers.rpcSntpConfig); }},
        {"networkGetSntpConfigWS", "sharedLock", [] { return networkGetSntpConfigWS(nullptr, nullptr); }, [] { return networkGetSntpConfigWS(&buffers.number, &buffers.rpcSntpConfig); }},
        {"networkGetSntpConfigWSHost", "sharedLock", [] { return networkGetSntpConfigWSHost(nullptr, nullptr); }, [] { return networkGetSntpConfigWSHost(&buffers.number, &buffers.rpcSntpConfigHost); }},
        {"networkUpdateSntpConfig", "sharedLock", [] { return networkUpdateSntpConfig(nullptr); }, [] { return networkUpdateSntpConfig(&buffers.rpcSntpConfig); }},
        {"networkUpdateSntpConfigHost", "sharedLock", [] { return networkUpdateSntpConfigHost(nullptr); }, [] { return networkUpdateSntpConfigHost(&buffers.rpcSntpConfigHost); }},
        {"networkGetSntpInfo", "sharedLock", [] { return networkGetSntpInfo(nullptr); }, [] { return networkGetSntpInfo(&buffers.rpcSntpInfo); }},
        {"networkGetSntpInfoWS", "sharedLock", [] { return networkGetSntpInfoWS(nullptr, nullptr); }, [] { return networkGetSntpInfoWS(&buffers.number, &buffers.rpcSntpInfo); }},
        {"networkGetSntpInfoWSHost", "sharedLock", [] { return networkGetSntpInfoWSHost(nullptr, nullptr); }, [] { return networkGetSntpInfoWSHost(&buffers.number, &buffers.rpcSntpInfoHost); }},
        {"networkSnmptrapAdd", "sharedLock", [] { return networkSnmptrapAdd(nullptr, 1, 1); }, [] { return networkSnmptrapAdd("192.0.2.1", 1, 1); }},
        {"networkGetSnmptrapConfig", "sharedLock", [] { return networkGetSnmptrapConfig(nullptr); }, [] { return networkGetSnmptrapConfig(&buffers.rpcSnmpTrapConfig); }},
        {"networkSnmptrapChange", "sharedLock", [] { return networkSnmptrapChange(nullptr, 1, 1); }, [] { return networkSnmptrapChange("192.0.2.1", 1, 1); }},
        {"networkSnmptrapPort", "sharedLock", [] { return networkSnmptrapPort(1); }, [] { return networkSnmptrapPort(1); }},
        {"networkSnmpCommunityAdd", "sharedLock", [] { return networkSnmpCommunityAdd(nullptr, rpcSnmpCommunityReadOnly, 1); }, [] { return networkSnmpCommunityAdd("192.0.2.1", rpcSnmpCommunityReadOnly, 1); }},
        {"networkSnmpCommunityChange", "sharedLock", [] { return networkSnmpCommunityChange(nullptr, rpcSnmpCommunityReadOnly); }, [] { return networkSnmpCommunityChange("192.0.2.1", rpcSnmpCommunityReadOnly); }},
        {"networkSnmpCommunityGet", "sharedLock", [] { return networkSnmpCommunityGet(nullptr); }, [] { return networkSnmpCommunityGet(&buffers.rpcSnmpCommunityConfig); }},
        {"networkSnmpSystemChange", "sharedLock", [] { return networkSnmpSystemChange(nullptr, rpcSnmpSystemName); }, [] { return networkSnmpSystemChange("192.0.2.1", rpcSnmpSystemName); }},
        {"networkSnmpSystemGet", "sharedLock", [] { return networkSnmpSystemGet(nullptr); }, [] { return networkSnmpSystemGet(&buffers.rpcSnmpSystemConfig); }},
        {"networkGetPtyMaxSess", "sharedLock", [] { return networkGetPtyMaxSess(nullptr, nullptr); }, [] { return networkGetPtyMaxSess(&buffers.numbers[0], &buffers.numbers[1]); }},
        {"networkSetPtyMaxSess", "exclusiveLock", [] { return networkSetPtyMaxSess(1); }, [] { return networkSetPtyMaxSess(1); }},
        {"networkSetSntpTimezoneDstStart", "exclusiveLock", [] { return networkSetSntpTimezoneDstStart(1, 1, 1, 1); }, [] { return networkSetSntpTimezoneDstStart(1, 1, 1, 1); }},
        {"networkSetSntpTimezoneDstEnd", "exclusiveLock", [] { return networkSetSntpTimezoneDstEnd(1, 1, 1, 1); }, [] { return networkSetSntpTimezoneDstEnd(1, 1, 1, 1); }},
        {"networkSetSntpTimezoneDstOffset", "exclusiveLock", [] { return networkSetSntpTimezoneDstOffset(1); }, [] { return networkSetSntpTimezoneDstOffset(1); }},
        {"networkSetSntpTimezone", "exclusiveLock", [] { return networkSetSntpTimezone(1, nullptr); }, [] { return networkSetSntpTimezone(1, "192.0.2.1"); }},
        {"networkGetSntpTimezoneInfo", "sharedLock", [] { return networkGetSntpTimezoneInfo(nullptr); }, [] { return networkGetSntpTimezoneInfo(&buffers.rpcNetworkSntpTimezone); }},
        {"networkGetIpv6Addr", "sharedLock", [] { return networkGetIpv6Addr(nullptr, nullptr); }, [] { return networkGetIpv6Addr(buffers.texts[0], buffers.texts[1]); }},
        {"networkSetIpv6Addr", "exclusiveLock", [] { return networkSetIpv6Addr(nullptr, 1); }, [] { return networkSetIpv6Addr(buffers.texts[0], 1); }},
        {"networkSetIpv6Gw", "exclusiveLock", [] { return networkSetIpv6Gw(nullptr); }, [] { return networkSetIpv6Gw(buffers.texts[0]); }},
        {"networkRemoveIpv6Addr", "exclusiveLock", [] { return networkRemoveIpv6Addr(); }, [] { return networkRemoveIpv6Addr(); }},
        {"networkRemoveIpv6Gw", "exclusiveLock", [] { return networkRemoveIpv6Gw(); }, [] { return networkRemoveIpv6Gw(); }},
        {"networkSetOntMng", "", [] { return networkSetOntMng(1, 1, 1); }, [] { return networkSetOntMng(1, 1, 1); }},
        {"networkGetOntMng", "", [] { return networkGetOntMng(&buffers.numbers[0], &buffers.numbers[1], &buffers.numbers[2]); }, [] { return networkGetOntMng(&buffers.numbers[0], &buffers.numbers[1], &buffers.numbers[2]); }},
        {"networkHttpServerSet", "exclusiveLock", [] { return networkHttpServerSet(1); }, [] { return networkHttpServerSet(1); }},
        {"networkHttpGet", "sharedLock", [] { return networkHttpGet(&buffers.flag); }, [] { return networkHttpGet(&buffers.flag); }},
    };
    // clang-format on
    return functions;
}
