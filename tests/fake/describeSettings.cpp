#include "fake/describe.h"

#include <fmt/format.h>

#include <cstddef>
#include <type_traits>

namespace fake {

namespace {

using Manager = std::remove_extent_t<decltype(varoLib_s_subag::managers)>;
using Community = std::remove_extent_t<decltype(varoLib_s_snmpCommunity::communities)>;

std::string describeEntry(const Manager& manager) {
    return manager.ipAddress == 0 && manager.community[0] == '\0'
               ? "{}"
               : fmt::format("{{{} {}}}", dotted(manager.ipAddress),
                             quotedField(manager.community));
}

std::string describeEntry(const Community& community) {
    return community.name[0] == '\0' && community.access[0] == '\0'
               ? "{}"
               : fmt::format("{{{} {}}}", quotedField(community.name),
                             quotedField(community.access));
}

std::string describeEntry(const rpcSntpSrv& server) {
    return server.ipAddress == 0 && server.ntpVersion == 0 && server.priority == 0
               ? "{}"
               : fmt::format("{{{} {} {}}}", dotted(server.ipAddress), server.ntpVersion,
                             server.priority);
}

std::string describeEntry(const rpcSntpSrvHost& server) {
    return server.host[0] == '\0' && server.ntpVersion == 0 && server.priority == 0 &&
                   server.addressType == 0
               ? "{}"
               : fmt::format("{{{} {} {} {}}}", quotedField(server.host), server.ntpVersion,
                             server.priority, server.addressType);
}

/// Each entry behind a blank, without the empty ones at the end.
template <class Entry, std::size_t size>
std::string describeList(const Entry (&entries)[size]) {
    std::string all;
    std::string pending;
    for (const Entry& entry : entries) {
        const std::string shown = describeEntry(entry);
        pending += ' ';
        pending += shown;
        if (shown != "{}") {
            all += pending;
            pending.clear();
        }
    }
    return all;
}

}  // namespace

std::string describe(const varoLib_s_telnetSrv& server) {
    return fmt::format("{{enabled={} sessions={} idle={}}}", server.enabled, server.maxSessions,
                       server.idleTimeout);
}

std::string describe(const varoLib_s_sshSrv& server) {
    return fmt::format("{{enabled={} port={}}}", server.enabled, server.port);
}

std::string describe(const varoLib_s_ftpSrv& server) {
    return fmt::format("{{state={}}}", server.state);
}

std::string describe(const varoLib_s_acs& acs) {
    return fmt::format("{{enabled={} source={}}}", acs.enabled, acs.source);
}

std::string describe(const varoLib_s_subag& agent) {
    return fmt::format("{{port={}{}}}", agent.port, describeList(agent.managers));
}

std::string describe(const varoLib_s_snmpCommunity& communities) {
    return fmt::format("{{communities{}}}", describeList(communities.communities));
}

std::string describe(const varoLib_s_snmpSystem& system) {
    return fmt::format("{{{} {} {}}}", quotedField(system.contact), quotedField(system.location),
                       quotedField(system.name));
}

std::string describe(const rpcSntpConfig& config) {
    return fmt::format("{{mode={}{}}}", config.mode, describeList(config.servers));
}

std::string describe(const rpcSntpConfigHost& config) {
    return fmt::format("{{mode={}{}}}", config.mode, describeList(config.servers));
}

std::string describe(const rpcSntpInfo& info) {
    return fmt::format("{{state={} {}}}", info.client.state, dotted(info.servers[0].ipAddress));
}

std::string describe(const rpcSntpInfoHost& info) {
    return fmt::format("{{state={} {}}}", info.client.state, quotedField(info.servers[0].host));
}

std::string describe(const varoLib_s_sntpTimeZone& zone) {
    return fmt::format("{{name={} offset={} dst={} start={}/{}/{}/{} end={}/{}/{}/{} preset={}}}",
                       quotedField(zone.name), zone.offset, zone.dstOffset, zone.dstSMonth,
                       zone.dstSWeek, zone.dstSDayInWeek, zone.dstSTime, zone.dstEMonth,
                       zone.dstEWeek, zone.dstEDayInWeek, zone.dstETime, zone.preset);
}

}  // namespace fake
