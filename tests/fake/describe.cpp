#include "fake/describe.h"

#include <netinet/in.h>

#include <fmt/core.h>

#include <cstring>

namespace fake {

namespace {

/// The content of a text field, which need not be terminated.
template <std::size_t size>
std::string text(const char (&field)[size]) {
    return quoted({field, strnlen(field, size)});
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
    return fmt::format("{{domain={} pri={} sec={}}}", text(dns.domain), dotted(dns.ip_pri),
                       dotted(dns.ip_sec));
}

std::string describe(const varoLib_s_dns6& dns) {
    return fmt::format("{{domain={} pri={} sec={}}}", text(dns.domain), text(dns.ipv6_pri),
                       text(dns.ipv6_sec));
}

std::string describe(const varoLib_s_interface& interface) {
    return fmt::format("{{{}/{} in network byte order}}", dotted(ntohl(interface.ipAddr)),
                       dotted(ntohl(interface.netmask)));
}

}  // namespace fake
