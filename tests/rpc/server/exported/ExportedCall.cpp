#include "exported/ExportedCall.h"

#include "fake/Platform.h"

#include <cstring>

using fake::Platform;

namespace {

/// The content of a text field, which need not be terminated.
template <std::size_t size>
std::string shownField(const char (&text)[size]) {
    return fake::quoted({text, strnlen(text, size)});
}

}  // namespace

ExportedFunctions& exportedFunctions() {
    static ExportedFunctions functions;
    return functions;
}

std::string shown(const rpcSntpConfig* config) {
    std::string text = fmt::format("{{{}", config->mode);
    for (const rpcSntpSrv& server : config->servers) {
        text += fmt::format(" [{} {} {}]", server.ipAddress, server.ntpVersion, server.priority);
    }
    return text + "}";
}

std::string shown(const rpcSntpConfigHost* config) {
    std::string text = fmt::format("{{{}", config->mode);
    for (const rpcSntpSrvHost& server : config->servers) {
        text += fmt::format(" [{} {} {} {}]", shownField(server.host), server.ntpVersion,
                            server.priority, server.addressType);
    }
    return text + "}";
}

int ExportedCall::end() {
    Platform& platform = Platform::current();
    const int status = platform.script.failureOf(name);
    platform.journal.write(fmt::format("{}({}) -> {}", name, argumentList, status));
    return status;
}

void ExportedCall::addArgument(const std::string& argument) {
    argumentList += argumentList.empty() ? argument : ", " + argument;
}

void ExportedCall::fillOne(OutputText text) {
    note(text.place);
    if (fills()) {
        putText(text.place, text.size);
    }
}

void ExportedCall::noteValues(const Network::ArpInfo& info) {
    std::vector<std::uint32_t>& values = exportedFunctions().valuesBefore;
    values = {info.ipAddr};
    values.insert(values.end(), std::begin(info.macAddr), std::end(info.macAddr));
    values.insert(values.end(),
                  {info.slot, info.port, static_cast<std::uint32_t>(info.type), info.value});
}

void ExportedCall::noteValues(const Network::HttpInfo& info) {
    exportedFunctions().valuesBefore = {info.httpEnabled, info.httpsEnabled, info.httpsPort,
                                        static_cast<std::uint32_t>(info.httpsProtocol)};
}

void ExportedCall::noteValues(const Network::RemoteAccessRule& rule) {
    exportedFunctions().valuesBefore = {rule.sequenceNumber, rule.ipAddr, rule.netmask,
                                        rule.permit};
}

void ExportedCall::putText(char* place, std::size_t size) {
    const std::string text = telling.text(++filled, size - 1);
    std::memcpy(place, text.c_str(), size);
}

void ExportedCall::put(Network::ArpInfo& r) {
    putAll(r.ipAddr, r.macAddr, r.slot, r.port, r.type, r.value);
}

void ExportedCall::put(Network::HttpInfo& r) {
    putAll(r.httpEnabled, r.httpsEnabled, r.httpsPort, r.httpsProtocol);
}

void ExportedCall::put(Network::RemoteAccessRule& r) {
    putAll(r.sequenceNumber, r.ipAddr, r.netmask, r.permit);
}

void ExportedCall::put(rpcNetworkInfo& r) {
    putAll(r.ipAddress, r.netmask, r.macAddress.octets, r.macAddress2.octets);
    putFlag(r.dhcpEnabled);
    putFlag(r.vendorClassEnabled);
    put(r.mngVlanId);
    putFlag(r.option82Enabled);
    putFlag(r.flag4);
    putFlag(r.flag5);
    putAll(r.mngVlanMode, r.defVid, r.defVlanMode);
}

void ExportedCall::put(rpcNetworkSntpTimezone& r) {
    putAll(r.name, r.offset, r.dstOffset, r.dstSMonth, r.dstSWeek, r.dstSDayInWeek, r.dstSTime,
           r.dstEMonth, r.dstEWeek, r.dstEDayInWeek, r.dstETime, r.preset);
}

void ExportedCall::put(rpcSnmpManager& r) { putAll(r.ipAddress, r.community); }

void ExportedCall::put(rpcSnmpTrapConfig& r) { putAll(r.managers, r.port); }

void ExportedCall::put(rpcSnmpCommunity& r) { putAll(r.name, r.access); }

void ExportedCall::put(rpcSnmpCommunityConfig& r) { put(r.communities); }

void ExportedCall::put(rpcSnmpSystemConfig& r) { putAll(r.contact, r.location, r.name); }

void ExportedCall::put(rpcSntpSrv& r) { putAll(r.ipAddress, r.ntpVersion, r.priority); }

void ExportedCall::put(rpcSntpSrvHost& r) {
    putAll(r.host, r.ntpVersion, r.priority, r.addressType);
}

void ExportedCall::put(rpcSntpConfig& r) { putAll(r.mode, r.servers); }

void ExportedCall::put(rpcSntpConfigHost& r) { putAll(r.mode, r.servers); }

void ExportedCall::put(rpcSntpClientInfo& r) {
    putAll(r.state, r.mode, r.leapIndicator, r.stratum, r.pollInterval, r.offset,
           r.referenceAddress, r.delay, r.dispersion, r.lastUpdate);
}

void ExportedCall::put(rpcSntpClientInfoHost& r) {
    putAll(r.state, r.mode, r.leapIndicator, r.stratum, r.pollInterval, r.offset, r.referenceHost,
           r.delay, r.dispersion, r.lastUpdate);
}

void ExportedCall::put(rpcSntpClientUnicastInfo& r) {
    putAll(r.pollInterval, r.timeout, r.retries);
}

void ExportedCall::put(rpcSntpSrvInfo& r) {
    putAll(r.state, r.ipAddress, r.stratum, r.reachability, r.offset, r.delay);
}

void ExportedCall::put(rpcSntpSrvInfoHost& r) {
    putAll(r.state, r.host, r.stratum, r.reachability, r.offset, r.delay);
}

void ExportedCall::put(rpcSntpInfo& r) { putAll(r.client, r.unicast, r.servers); }

void ExportedCall::put(rpcSntpInfoHost& r) { putAll(r.client, r.unicast, r.servers); }
