#include "mngctl/wire/records.h"

#include "mngctl/wire/choices.h"

namespace mngctl {

void fields(FieldVisitor& visit, rpcSlotPort& record) {
    visit.number("slot", record.slot);
    visit.number("port", record.port);
}

void fields(FieldVisitor& visit, rpcStringResult& record) { visit.fixedText("text", record.text); }

void fields(FieldVisitor& visit, rpcNetworkArpInfo& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.mac("macAddress", record.macAddress.octets);
    visit.record("slotPort", record.slotPort);
    visit.choice("type", record.type);
    visit.number("value", record.value);
}

void fields(FieldVisitor& visit, rpcNetworkArpInfoResult& record) {
    visit.record("info", record.info);
    visit.status("result", record.result);
}

void fields(FieldVisitor& visit, rpcNetworkInfo& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.address("netmask", record.netmask);
    visit.mac("macAddress", record.macAddress.octets);
    visit.mac("macAddress2", record.macAddress2.octets);
    visit.flag("dhcpEnabled", record.dhcpEnabled);
    visit.flag("vendorClassEnabled", record.vendorClassEnabled);
    visit.number("mngVlanId", record.mngVlanId);
    visit.flag("option82Enabled", record.option82Enabled);
    visit.flag("flag4", record.flag4);
    visit.flag("flag5", record.flag5);
    visit.choice("mngVlanMode", record.mngVlanMode);
    visit.number("defVid", record.defVid);
    visit.choice("defVlanMode", record.defVlanMode);
}

void fields(FieldVisitor& visit, rpcNetworkIpResult& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.flag("flag", record.flag);
}

void fields(FieldVisitor& visit, rpcNetworkHttpInfo& record) {
    visit.flag("httpEnabled", record.httpEnabled);
    visit.flag("httpsEnabled", record.httpsEnabled);
    visit.number("httpsPort", record.httpsPort);
    visit.choice("httpsProtocol", record.httpsProtocol);
}

void fields(FieldVisitor& visit, rpcNetworkHttpResult& record) {
    visit.status("result", record.result);
    visit.flag("enabled", record.enabled);
}

void fields(FieldVisitor& visit, rpcNetworkTimeResult& record) {
    visit.fixedText("time", record.time);
    visit.status("result", record.result);
}

void fields(FieldVisitor& visit, rpcNetworkTimezone& record) {
    visit.number("offset", record.offset);
    visit.fixedText("name", record.name);
}

void fields(FieldVisitor& visit, rpcNetworkSntpTimezone& record) {
    visit.fixedText("name", record.name);
    visit.number("offset", record.offset);
    visit.number("dstOffset", record.dstOffset);
    visit.number("dstSMonth", record.dstSMonth);
    visit.number("dstSWeek", record.dstSWeek);
    visit.number("dstSDayInWeek", record.dstSDayInWeek);
    visit.number("dstSTime", record.dstSTime);
    visit.number("dstEMonth", record.dstEMonth);
    visit.number("dstEWeek", record.dstEWeek);
    visit.number("dstEDayInWeek", record.dstEDayInWeek);
    visit.number("dstETime", record.dstETime);
    visit.number("preset", record.preset);
}

void fields(FieldVisitor& visit, rpcNetworkDnsInfo& record) {
    visit.address("primary", record.primary);
    visit.address("secondary", record.secondary);
}

void fields(FieldVisitor& visit, rpcNetworkDnsInfoWS& record) {
    visit.number("result", record.result);
    visit.address("primary", record.primary);
    visit.address("secondary", record.secondary);
}

void fields(FieldVisitor& visit, rpcNetworkDomainWS& record) {
    visit.number("result", record.result);
    visit.fixedText("domain", record.domain);
}

void fields(FieldVisitor& visit, rpcNetworkIPv6DnsInfo& record) {
    visit.number("result", record.result);
    visit.fixedText("primary", record.primary);
    visit.fixedText("secondary", record.secondary);
}

void fields(FieldVisitor& visit, rpcNetworkIPv6Domain& record) {
    visit.number("result", record.result);
    visit.fixedText("domain", record.domain);
}

void fields(FieldVisitor& visit, rpcNetworkIpv6Data& record) {
    visit.fixedText("addresses", record.addresses);
    visit.fixedText("gateway", record.gateway);
}

void fields(FieldVisitor& visit, rpcNetworkRemoteAccessRule& record) {
    visit.number("index", record.index);
    visit.address("ipAddress", record.ipAddress);
    visit.address("netmask", record.netmask);
    visit.flag("flag", record.flag);
}

void fields(FieldVisitor& visit, rpcNetworkRemoteAccessResult& record) {
    visit.status("result", record.result);
    visit.record("rule", record.rule);
}

void fields(FieldVisitor& visit, rpcNetworkSWVersion& record) {
    visit.fixedText("product", record.product);
    visit.fixedText("buildDirectory", record.buildDirectory);
    visit.fixedText("buildTime", record.buildTime);
    visit.fixedText("upgradeProduct", record.upgradeProduct);
    visit.fixedText("packageRelease", record.packageRelease);
    visit.fixedText("osRelease", record.osRelease);
    visit.fixedText("fileSystem", record.fileSystem);
    visit.fixedText("bootLoader", record.bootLoader);
    visit.fixedText("recoveryFileSystem", record.recoveryFileSystem);
}

void fields(FieldVisitor& visit, rpcNetworkSWVersionComp& record) {
    visit.fixedText("line", record.line);
    visit.number("index", record.index);
}

void fields(FieldVisitor& visit, rpcNetworkPackageVersion& record) {
    visit.fixedText("name", record.name);
    visit.fixedText("release", record.release);
}

void fields(FieldVisitor& visit, rpcPtyConfig& record) {
    visit.number("maxSessions", record.maxSessions);
    visit.number("value", record.value);
}

void fields(FieldVisitor& visit, rpcSnmpManager& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.fixedText("community", record.community);
}

void fields(FieldVisitor& visit, rpcSnmpTrapConfig& record) {
    visit.list("managers", record.managers);
    visit.number("port", record.port);
}

void fields(FieldVisitor& visit, rpcSnmpCommunity& record) {
    visit.fixedText("name", record.name);
    visit.choice("access", record.access);
}

void fields(FieldVisitor& visit, rpcSnmpCommunityConfig& record) {
    visit.list("communities", record.communities);
}

void fields(FieldVisitor& visit, rpcSnmpSystemConfig& record) {
    visit.fixedText("contact", record.contact);
    visit.fixedText("location", record.location);
    visit.fixedText("name", record.name);
}

}  // namespace mngctl
