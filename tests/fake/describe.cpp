#include "fake/describe.h"

#include <fmt/core.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstring>

namespace fake {

namespace {

/// Bytes that are to be zero are not mentioned when they are.
template <std::size_t size>
std::string rest(const unsigned char (&bytes)[size]) {
    const bool isClear =
        std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; });
    return isClear ? "" : " reserved bytes set";
}

}  // namespace

std::string dotted(std::uint32_t address) {
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 0xff, address >> 8 & 0xff,
                       address & 0xff);
}

std::string describe(const varoLib_s_internalConfig& config) {
    return fmt::format("{{severity={}}}", config.severity);
}

std::string describe(const varoLib_s_dns& dns) {
    return fmt::format("{{domain={} pri={} sec={}}}", quotedField(dns.domain), dotted(dns.ip_pri),
                       dotted(dns.ip_sec));
}

std::string describe(const varoLib_s_dns6& dns) {
    return fmt::format("{{domain={} pri={} sec={}}}", quotedField(dns.domain),
                       quotedField(dns.ipv6_pri), quotedField(dns.ipv6_sec));
}

std::string describe(const varoLib_s_interface& interface) {
    return fmt::format("{{{}/{} in network byte order}}", dotted(ntohl(interface.ipAddr)),
                       dotted(ntohl(interface.netmask)));
}

std::string describe(const varoLib_s_dhcp& dhcp) {
    return fmt::format("{{selector={} dhcp={} vendor={} option82={} circuitId={}}}",
                       dhcp.updateSelector, dhcp.dhcpEnabled, dhcp.vendorClassEnabled,
                       dhcp.option82Enabled, quotedField(dhcp.circuitId));
}

std::string describe(const varoLib_s_dhcp6& dhcp) {
    return fmt::format("{{selector={} dhcp={}}}", dhcp.updateSelector, dhcp.dhcpEnabled);
}

std::string describe(const varoLib_s_route& route) {
    return fmt::format("{{{} via {}{}}}", dotted(route.destination), dotted(route.gateway),
                       rest(route.reserved));
}

std::string describe(const varoLib_s_ipv6& ipv6) {
    return fmt::format("{{addr={} prefix={} list={} gw={}}}", quotedField(ipv6.ipv6Addr),
                       ipv6.prefixLen, quotedField(ipv6.ipv6AddrList), quotedField(ipv6.ipv6Gw));
}

std::string describe(const zubridge_acl_condition& condition) {
    return fmt::format("{{{} {} {} {} {}}}", condition.kind, condition.selector, condition.flags,
                       dotted(condition.address), dotted(condition.wildcard));
}

std::string describeRequest(const varoLib_s_interface& interface) {
    return fmt::format("{{{}/{} {}{}{}}}", dotted(interface.ipAddr), dotted(interface.netmask),
                       quotedField(interface.name), interface.reserved == 0 ? "" : " reserved set",
                       rest(interface.reserved2));
}

}  // namespace fake
