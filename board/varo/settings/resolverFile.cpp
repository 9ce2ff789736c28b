#include "board/varo/settings/resolverFile.h"

#include "board/varo/link/reportText.h"
#include "board/varo/store/Column.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>

#include <algorithm>
#include <string_view>

namespace varo {

namespace {

/// Spaces and control characters would end the value, or start another line of the file. Bytes
/// above ASCII are left to the resolver.
bool isOneWord(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte > ' ' && byte != 0x7f;
    });
}

/// An address of RFC 4291, with the zone of a link-local one (RFC 4007) after a percent sign.
bool isIpv6Address(std::string_view text) {
    const std::size_t percent = text.find('%');
    in6_addr address{};
    if (inet_pton(AF_INET6, std::string(text.substr(0, percent)).c_str(), &address) != 1) {
        return false;
    }
    if (percent == std::string_view::npos) {
        return true;
    }
    const std::string_view zone = text.substr(percent + 1);
    return !zone.empty() && zone.size() < IF_NAMESIZE && isOneWord(zone);
}

}  // namespace

ResolverText resolverText(const varoLib_s_dns& dns, const varoLib_s_dns6& dns6) {
    ResolverText text;
    std::string search;
    const auto addDomain = [&](std::string_view domain) {
        if (isOneWord(domain)) {
            search += fmt::format(" {}", domain);
        } else {
            text.leftOut.push_back(
                fmt::format("domain {} is not one word", quoted(domain, domain.size())));
        }
    };
    std::string servers;
    const auto addIpv4 = [&](std::uint32_t address) {
        if (address != 0) {
            servers += fmt::format("nameserver {}\n", ipv4Text(address));
        }
    };
    const auto addIpv6 = [&](std::string_view address) {
        if (address.empty()) {
            return;
        }
        if (isIpv6Address(address)) {
            servers += fmt::format("nameserver {}\n", address);
        } else {
            text.leftOut.push_back(
                fmt::format("server {} is not an IPv6 address", quoted(address, address.size())));
        }
    };

    const std::string_view domain = dns.domain;
    const std::string_view domain6 = dns6.domain;
    if (!domain.empty()) {
        addDomain(domain);
    }
    if (!domain6.empty() && domain6 != domain) {
        addDomain(domain6);
    }
    addIpv4(dns.ip_pri);
    addIpv6(dns6.ipv6_pri);
    addIpv4(dns.ip_sec);
    addIpv6(dns6.ipv6_sec);

    text.content = "# Written by the configuration library; changes made here are lost.\n";
    if (!search.empty()) {
        text.content += fmt::format("search{}\n", search);
    }
    text.content += servers;
    return text;
}

}  // namespace varo
